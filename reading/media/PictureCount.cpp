#include "reading/media/PictureCount.h"

#include "reading/ffmpeg/Stamps.h"

extern "C" {
#include <libavcodec/codec_desc.h>
}

#include <algorithm>

namespace scenedetect {

bool PictureCount::IsPossible(AVCodecID codec) {
    switch (codec) {
    case AV_CODEC_ID_MPEG1VIDEO:
    case AV_CODEC_ID_MPEG2VIDEO:
    case AV_CODEC_ID_MPEG4:
    case AV_CODEC_ID_H264:
    case AV_CODEC_ID_HEVC:
    case AV_CODEC_ID_VP9:
    case AV_CODEC_ID_AV1:
    case AV_CODEC_ID_FFV1:
    case AV_CODEC_ID_FLV1:
    case AV_CODEC_ID_MSMPEG4V3:
    case AV_CODEC_ID_WMV2:
        return true;
    default: {
        const AVCodecDescriptor* descriptor = avcodec_descriptor_get(codec);
        return descriptor && (descriptor->props & AV_CODEC_PROP_INTRA_ONLY) != 0;
    }
    }
}

bool PictureCount::Add(const AVPacket& packet) {
    // "Not coded", or the place of a picture that came packed with the one before.
    constexpr int kMostOfNoPicture = 20;
    if (IsWild(packet.pts) || (packet.flags & AV_PKT_FLAG_CORRUPT) != 0 ||
        (m_codec == AV_CODEC_ID_MPEG4 && packet.size < kMostOfNoPicture))
        return false;
    // All that is decoded before a key frame is shown before it; otherwise streams were joined. What
    // decoders make of a beginning without one is their own affair.
    const bool isKey = (packet.flags & AV_PKT_FLAG_KEY) != 0;
    if (isKey ? packet.pts <= m_latest : m_latest == kNone || packet.pts <= m_told)
        return false;
    m_latest = std::max(m_latest, packet.pts);
    // What an edit list cuts away is decoded and not handed out.
    return (packet.flags & AV_PKT_FLAG_DISCARD) != 0 || m_waiting.emplace(packet.pts, packet.pos).second;
}

std::optional<PictureCount::Told> PictureCount::Next() {
    if (m_waiting.size() <= m_reordered)
        return std::nullopt;
    const auto first = m_waiting.begin();
    const Told told{first->first, first->second};
    m_waiting.erase(first);
    m_told = told.stamp;
    return told;
}

} // namespace scenedetect
