// How the bytes of a picture are to be read, and the formats in which the filter takes them as they are.
#pragma once

#include "reading/dv/DvFrame.h"
#include "reading/timing/TimeScale.h"

#include <windows.h>

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace scenedetect {

/// The fields of a picture's bitmap header, and the rate.
struct PictureFormat {
    DWORD fourcc = 0; ///< biCompression; 0 is RGB
    LONG width = 0;
    LONG height = 0; ///< negative: the top row comes first (RGB only)
    WORD bitCount = 0;
    std::uint32_t imageBytes = 0;
    std::int64_t frameDuration = 0;     ///< 100 ns
    bool isDv411Of625 = false;          ///< DV whose pictures can't be compared undecoded
    std::vector<std::uint32_t> colours; ///< the colour table of 1, 4 or 8 bits a pixel: an RGBQUAD each

    friend bool operator==(const PictureFormat&, const PictureFormat&) = default;
};

/// biCompression of DV frames of 25 Mbit/s.
inline constexpr DWORD kDvFourcc = MAKEFOURCC('d', 'v', 's', 'd');

[[nodiscard]] Ratio DvRate(DvSystem system);
/// DV of any container runs at the rate of its line system; the container's is kept where it says the same,
/// since its time stamps count in it.
[[nodiscard]] Ratio SettleDvRate(Ratio declared, DvSystem system);
/// Of a whole frame: "dvsd", 720 x 576 or 720 x 480.
[[nodiscard]] PictureFormat DvPictureFormat(std::span<const std::uint8_t> frame, DvSystem system);

/// The format of the uncompressed pictures that a file declares, with the size of one: RGB of all depths,
/// YUY2, UYVY, I420 (also under its name "IYUV") and YV12. Nothing for any other, and for sizes beyond
/// reason.
[[nodiscard]] std::optional<PictureFormat> UncompressedFormat(PictureFormat declared);

} // namespace scenedetect
