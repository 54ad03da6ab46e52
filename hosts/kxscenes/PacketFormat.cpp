#include "hosts/kxscenes/PacketFormat.h"

#include "hosts/kxscenes/TimeScale.h"

extern "C" {
#include <libavcodec/codec_id.h>
}

#include <array>
#include <cstdlib>
#include <string_view>

namespace scenedetect {
namespace {

constexpr DWORD kI420 = MAKEFOURCC('I', '4', '2', '0');
constexpr DWORD kIyuv = MAKEFOURCC('I', 'Y', 'U', 'V'); // another name for the same
constexpr WORD kRgbBits = 24;

struct KnownFormat {
    DWORD fourcc;
    WORD bitCount;
};
constexpr std::array kKnownFormats = {KnownFormat{MAKEFOURCC('Y', 'U', 'Y', '2'), 16},
                                      KnownFormat{MAKEFOURCC('U', 'Y', 'V', 'Y'), 16}, KnownFormat{kI420, 12},
                                      KnownFormat{MAKEFOURCC('Y', 'V', '1', '2'), 12}};

// The AVI reader keeps the sign of the header's height as this mark at the end of the codec's data.
bool IsBottomUp(const AVCodecParameters& stream) {
    constexpr std::string_view kMark("BottomUp\0", 9);
    const std::string_view data(reinterpret_cast<const char*>(stream.extradata),
                                static_cast<std::size_t>(stream.extradata_size));
    return data.ends_with(kMark);
}

} // namespace

AVRational DvRate(DvSystem system) {
    return system == DvSystem::Lines625 ? AVRational{25, 1} : AVRational{30000, 1001};
}

PictureFormat DvPictureFormat(DvSystem system) {
    return {kDvFourcc,
            720,
            system == DvSystem::Lines625 ? 576 : 480,
            24,
            static_cast<std::uint32_t>(DvFrameBytes(system)),
            FrameDurationOf(DvRate(system))};
}

std::optional<PictureFormat> UncompressedFormat(const AVCodecParameters& stream, AVRational rate) {
    if (stream.codec_id != AV_CODEC_ID_RAWVIDEO || stream.width <= 0 || stream.height == 0)
        return std::nullopt;
    PictureFormat format;
    format.width = stream.width;
    format.height = std::abs(stream.height);
    format.frameDuration = FrameDurationOf(rate);
    std::int64_t rowBits = 0;
    if (stream.codec_tag == BI_RGB && stream.bits_per_coded_sample == kRgbBits) {
        format.bitCount = kRgbBits;
        format.height = IsBottomUp(stream) ? format.height : -format.height;
        rowBits = (std::int64_t{format.width} * kRgbBits + 31) / 32 * 32;
    } else {
        for (const KnownFormat& known : kKnownFormats) {
            if (stream.codec_tag != known.fourcc && !(known.fourcc == kI420 && stream.codec_tag == kIyuv))
                continue;
            format.fourcc = known.fourcc;
            format.bitCount = known.bitCount;
            rowBits = std::int64_t{format.width} * known.bitCount;
        }
    }
    const std::int64_t bytes = rowBits * std::abs(std::int64_t{format.height}) / 8;
    if (bytes <= 0 || bytes > INT32_MAX)
        return std::nullopt;
    format.imageBytes = static_cast<std::uint32_t>(bytes);
    return format;
}

} // namespace scenedetect
