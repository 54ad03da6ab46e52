#include "products/muxing/PcmPacket.h"

#include "reading/ffmpeg/Stamps.h"

extern "C" {
#include <libavutil/mathematics.h>
}

#include <algorithm>

namespace scenedetect {
namespace {

// Bytes of one sample of all channels; 0 for what is not plain PCM.
std::int64_t SampleBytes(const AVCodecParameters& codec) {
    if (codec.codec_id >= AV_CODEC_ID_ADPCM_IMA_QT || codec.sample_rate <= 0)
        return 0;
    return std::int64_t{av_get_exact_bits_per_sample(codec.codec_id)} * codec.ch_layout.nb_channels / 8;
}

} // namespace

bool CutAudio(AVPacket& packet, const AVStream& stream, std::int64_t begin, std::int64_t end,
              std::int64_t before) {
    const std::int64_t start = PresentationTime(packet);
    if (start == AV_NOPTS_VALUE || start >= end)
        return false;
    const std::int64_t sampleBytes = SampleBytes(*stream.codecpar);
    if (sampleBytes == 0)
        return start > begin - std::max(before * packet.duration, std::int64_t{1});

    const AVRational sampleTimeBase{1, stream.codecpar->sample_rate};
    const auto samplesUntil = [&](std::int64_t time) {
        return av_rescale_q(time - start, stream.time_base, sampleTimeBase);
    };
    const std::int64_t samples = packet.size / sampleBytes;
    const std::int64_t first = begin > start ? samplesUntil(begin) : 0;
    const std::int64_t last = end == INT64_MAX ? samples : std::min(samples, samplesUntil(end));
    if (first >= last)
        return false;
    packet.data += first * sampleBytes;
    packet.size = static_cast<int>((last - first) * sampleBytes);
    packet.pts = packet.dts = std::max(start, begin);
    packet.duration = av_rescale_q(last - first, sampleTimeBase, stream.time_base);
    return true;
}

bool CutSubtitle(AVPacket& packet, std::int64_t begin, std::int64_t end) {
    const std::int64_t start = PresentationTime(packet);
    if (start == AV_NOPTS_VALUE || start >= end)
        return false;
    if (packet.duration <= 0) // it tells its end in a packet of its own
        return start >= begin;
    const std::int64_t last = std::min(start + packet.duration, end);
    packet.pts = packet.dts = std::max(start, begin);
    packet.duration = last - packet.pts;
    return packet.duration > 0;
}

} // namespace scenedetect
