// Small grey pictures of DV frames, made from the DC coefficients of the compressed luminance blocks.
#pragma once

#include "engine/ComparedSamples.h"

#include <array>
#include <cstdint>
#include <memory>
#include <span>

namespace scenedetect {

/// A picture of `width` x `height` bytes, row after row. `pixels` is 32-byte aligned and points into `raw`,
/// which the record frees; null when only the size was asked for.
struct DcImage {
    std::uint8_t* pixels = nullptr;
    std::unique_ptr<std::uint8_t[]> raw;
    std::int32_t width = 0;
    std::int32_t height = 0;
};

/// Immutable once built; any thread.
class DvDcImage {
  public:
    DvDcImage();

    /// Where the samples of mode 2, variant 1 lie in the frame's picture. Those of 625 lines are more a row
    /// than the picture has columns, so that its last row lacks most.
    [[nodiscard]] static GridPlaces Places(bool isPal);

    /// Mode 2 makes 22 x 18 (625 lines, `isPal`) or 22 x 15 (525 lines) bytes; modes 0 and 1 (90 pixels wide)
    /// only tell their sizes. `variant` 1 is the stream's own block layout, 0 one without the sequences'
    /// header blocks. A default span asks for the size alone. Null for an unknown mode or variant, for a
    /// frame shorter than the line system needs and for a frame with a mode other than 2. Throws
    /// std::bad_alloc.
    [[nodiscard]] std::unique_ptr<DcImage> Create(int mode, bool isPal, int variant,
                                                  std::span<const std::uint8_t> frame) const;

  private:
    /// Byte offsets of the macroblocks' DIF blocks, row after row of the picture.
    std::array<std::uint32_t, 6000> m_offsets{};
};

} // namespace scenedetect
