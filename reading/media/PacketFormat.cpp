#include "reading/media/PacketFormat.h"

extern "C" {
#include <libavcodec/codec_id.h>
}

#include <climits>
#include <cstdlib>
#include <string_view>

namespace scenedetect {
namespace {

constexpr WORD kRgbBits = 24;

// The AVI reader keeps the sign of the header's height as this mark at the end of the codec's data.
bool IsBottomUp(const AVCodecParameters& stream) {
    constexpr std::string_view kMark("BottomUp\0", 9);
    const std::string_view data(reinterpret_cast<const char*>(stream.extradata),
                                static_cast<std::size_t>(stream.extradata_size));
    return data.ends_with(kMark);
}

} // namespace

std::optional<PictureFormat> UncompressedFormat(const AVCodecParameters& stream, Ratio rate) {
    if (stream.codec_id != AV_CODEC_ID_RAWVIDEO || stream.height == INT_MIN ||
        (stream.codec_tag == BI_RGB && stream.bits_per_coded_sample != kRgbBits))
        return std::nullopt;
    PictureFormat declared;
    declared.fourcc = stream.codec_tag;
    declared.width = stream.width;
    declared.height = IsBottomUp(stream) ? std::abs(stream.height) : -std::abs(stream.height);
    declared.bitCount = static_cast<WORD>(stream.bits_per_coded_sample);
    declared.frameDuration = FrameDurationOf(rate);
    return UncompressedFormat(std::move(declared));
}

} // namespace scenedetect
