// Rows of luma turned into rows of YUY2 with neutral chroma.
#pragma once

#include <cstddef>
#include <cstdint>

namespace scenedetect {

/// How luma lies in a row: a byte a pixel, or 16-bit words in the machine's byte order.
enum class LumaPixels { Bytes, Words };

/// Writes `width` pixels of YUY2 (2 bytes each) from as many of luma. Of words the 8 bits from `shift` on
/// (0 to 8) count; of bytes all, and `shift` does not matter.
using LumaRow = void (*)(const std::uint8_t* luma, int shift, std::uint8_t* yuy2, std::size_t width);

/// The reference.
[[nodiscard]] LumaRow ScalarLumaRow(LumaPixels pixels);
/// The fastest on a processor with `cpuFeatures` (platform/CpuFeatures.h).
[[nodiscard]] LumaRow SelectLumaRow(LumaPixels pixels, unsigned cpuFeatures);

/// What a processor family adds, in a source folder of its own; null where it has nothing better than the
/// reference for these features.
[[nodiscard]] LumaRow FindSimdLumaRow(LumaPixels pixels, unsigned cpuFeatures);

inline constexpr std::uint8_t kNeutralChroma = 0x80;

} // namespace scenedetect
