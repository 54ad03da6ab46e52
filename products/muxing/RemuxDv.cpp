#include "products/muxing/RemuxDv.h"

#include "products/muxing/ClipMuxer.h"
#include "products/muxing/PacketSource.h"
#include "products/muxing/VideoEncoder.h"
#include "reading/base/HostError.h"
#include "reading/ffmpeg/FfmpegPointers.h"
#include "reading/ffmpeg/VideoDecoder.h"

#include <deque>
#include <optional>
#include <utility>

namespace scenedetect {

RemuxedDv RemuxDv(const std::string& raw, const FilePart& part, const Container& container,
                  OutputFile& target) {
    PacketSource source(raw, part);
    ClipMuxer muxer(target, container, source, source.Timecode());
    const auto packet = OwnFfmpeg(av_packet_alloc());
    RemuxedDv result;
    for (int stream = 0; (stream = source.Read(*packet)) != -1;) {
        result.frames += stream == 0 ? 1 : 0;
        muxer.Write(*packet, stream);
    }
    muxer.Finish();
    result.bytes = muxer.Size();
    return result;
}

void RequireDvEncodable(const std::string& path, const EncodeChoice& choice, const Container& container,
                        bool hasAudio) {
    const auto like = OwnFfmpeg(av_frame_alloc());
    like->width = 720;
    like->height = 576;
    like->format = AV_PIX_FMT_YUV420P;
    const VideoEncoder encoder(choice, {path, {1, 25}, {25, 1}}, *like, container);
    AVCodecParameters codec{};
    for (const AVCodecID id : {encoder.Context().codec_id, AV_CODEC_ID_PCM_S16LE}) {
        codec.codec_id = id;
        if (!CanHold(container, codec) && (hasAudio || id == encoder.Context().codec_id))
            throw HostError(path + ": " + RefusalText(container, codec) + Advice(container));
    }
}

RemuxedDv EncodeDv(const std::string& raw, const FilePart& part, const Container& container,
                   const EncodeChoice& choice, OutputFile& target) {
    PacketSource source(raw, part);
    std::optional<VideoEncoder> encoder;
    std::optional<ClipMuxer> muxer;
    std::deque<std::pair<FfmpegPtr<AVPacket>, int>> audio; // that came before the first picture
    const auto readVideo = [&](AVPacket& packet) {
        int stream = 0;
        for (; (stream = source.Read(packet)) > 0; av_packet_unref(&packet))
            audio.emplace_back(OwnFfmpeg(av_packet_clone(&packet)), stream);
        return stream == 0;
    };
    VideoDecoder decoder(source.File(), {}, readVideo);
    const VideoEncoder::Sink write = [&muxer](AVPacket& packet) { muxer->Write(packet, 0); };
    const auto picture = OwnFfmpeg(av_frame_alloc());
    RemuxedDv result;
    for (; decoder.Next(*picture); ++result.frames) {
        if (!muxer) {
            encoder.emplace(choice, SetupOf(source, *picture), *picture, container);
            muxer.emplace(target, container, source, source.Timecode(), &encoder->Context());
        }
        encoder->Encode(*picture, picture->best_effort_timestamp, write);
        for (; !audio.empty(); audio.pop_front())
            muxer->Write(*audio.front().first, audio.front().second);
    }
    if (!muxer)
        throw HostError(target.Path() + ": no picture can be decoded");
    encoder->Finish(write);
    muxer->Finish();
    result.bytes = muxer->Size();
    return result;
}

} // namespace scenedetect
