// Rows of luma turned into rows of YUY2 with neutral chroma.
#pragma once

#include <cstddef>
#include <cstdint>

namespace scenedetect {

/// Writes `width` pixels of YUY2 (2 bytes each) from `width` bytes of luma.
void LumaBytesToYuy2(const std::uint8_t* luma, std::uint8_t* yuy2, std::size_t width);

/// The same from 16-bit words in the machine's byte order, of which the 8 bits from `shift` on are the luma.
void LumaWordsToYuy2(const std::uint8_t* words, int shift, std::uint8_t* yuy2, std::size_t width);

} // namespace scenedetect
