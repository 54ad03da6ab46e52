#include "reading/readers/PictureFormat.h"

#include <dshow.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <limits>

namespace scenedetect {
namespace {

constexpr DWORD kI420 = MAKEFOURCC('I', '4', '2', '0');
constexpr DWORD kIyuv = MAKEFOURCC('I', 'Y', 'U', 'V'); // another name for the same

struct KnownFormat {
    DWORD fourcc;
    WORD bitCount;
};
constexpr std::array kKnownFormats = {KnownFormat{MAKEFOURCC('Y', 'U', 'Y', '2'), 16},
                                      KnownFormat{MAKEFOURCC('U', 'Y', 'V', 'Y'), 16}, KnownFormat{kI420, 12},
                                      KnownFormat{MAKEFOURCC('Y', 'V', '1', '2'), 12}};
constexpr std::array<WORD, 6> kRgbDepths = {1, 4, 8, 16, 24, 32};

// Bits from one row to the next; 0 for an unknown format, whose fields are made those of the known.
std::int64_t SettleRowBits(PictureFormat& format) {
    const std::int64_t width = format.width;
    if (format.fourcc == BI_RGB)
        return std::ranges::count(kRgbDepths, format.bitCount) * ((width * format.bitCount + 31) / 32 * 32);
    if (format.fourcc == kIyuv)
        format.fourcc = kI420;
    const auto* known = std::ranges::find(kKnownFormats, format.fourcc, &KnownFormat::fourcc);
    if (known == kKnownFormats.end())
        return 0;
    format.bitCount = known->bitCount;
    format.height = std::abs(format.height);
    return width * known->bitCount;
}

} // namespace

Ratio DvRate(DvSystem system) {
    return system == DvSystem::Lines625 ? Ratio{25, 1} : Ratio{30000, 1001};
}

Ratio SettleDvRate(Ratio declared, DvSystem system) {
    const Ratio rate = DvRate(system);
    return IsSameRate(declared, rate) ? declared : rate;
}

PictureFormat DvPictureFormat(std::span<const std::uint8_t> frame, DvSystem system) {
    PictureFormat format;
    format.fourcc = kDvFourcc;
    format.width = 720;
    format.height = system == DvSystem::Lines625 ? 576 : 480;
    format.bitCount = 24;
    format.imageBytes = static_cast<std::uint32_t>(DvFrameBytes(system));
    format.frameDuration = FrameDurationOf(DvRate(system));
    format.isDv411Of625 =
        system == DvSystem::Lines625 && ProfileOfDvFrame(frame, system) == DvProfile::Dv25Of411;
    return format;
}

std::optional<PictureFormat> UncompressedFormat(PictureFormat declared) {
    // One number that has no absolute value.
    if (declared.width <= 0 || declared.height == std::numeric_limits<LONG>::min())
        return std::nullopt;
    const std::int64_t rowBits = SettleRowBits(declared);
    const std::int64_t rows = std::abs(declared.height);
    constexpr std::int64_t kMostBits = std::int64_t{INT32_MAX} * 8;
    if (rowBits == 0 || rows == 0 || rowBits > kMostBits / rows)
        return std::nullopt;
    declared.imageBytes = static_cast<std::uint32_t>(rowBits * rows / 8);
    return declared;
}

} // namespace scenedetect
