#include "products/cutting/EncodePackets.h"

#include "products/cutting/SceneStamps.h"
#include "products/muxing/VideoEncoder.h"
#include "reading/ffmpeg/VideoDecoder.h"

#include <deque>
#include <memory>
#include <optional>
#include <utility>

namespace scenedetect {
namespace {

class EncodeRun {
  public:
    explicit EncodeRun(const CutJob& job) : m_job(job), m_clips(job) {}

    void Run() {
        VideoDecoder decoder(m_job.source.File(), {}, [this](AVPacket& packet) { return ReadVideo(packet); });
        const auto picture = OwnFfmpeg(av_frame_alloc());
        while ((m_next < m_job.cut.scenes.size() || !m_clips.IsEmpty()) && decoder.Next(*picture))
            Take(*picture);
        m_clips.FinishAll();
    }

  private:
    struct Other {
        FfmpegPtr<AVPacket> packet;
        int stream;
    };

    // The next packet of the video; others go to the clips on the way.
    bool ReadVideo(AVPacket& packet) {
        int stream = 0;
        for (; (stream = m_job.source.Read(packet)) > 0; av_packet_unref(&packet)) {
            m_clips.Offer(packet, stream);
            m_others.push_back({OwnFfmpeg(av_packet_clone(&packet)), stream});
        }
        return stream == 0;
    }

    void Take(const AVFrame& picture) {
        const std::int64_t time = picture.best_effort_timestamp;
        if (time == AV_NOPTS_VALUE)
            return;
        if (!m_stamps) // times of the first pass count from the same picture
            m_stamps.emplace(m_job.cut, m_job.source,
                             time - av_rescale_q(m_job.cut.firstPicture.time,
                                                 RationalOf(m_job.cut.scale.unit),
                                                 m_job.source.Video().time_base));
        for (; m_next < m_job.cut.scenes.size() && m_stamps->Begin(m_next) <= time; ++m_next)
            if (time < m_stamps->End(m_next) - m_stamps->Tolerance())
                Open(m_next, picture, time);
        m_clips.OfferPicture(picture, time);
        m_clips.FinishComplete(time);
        ForgetBefore(time);
    }

    void Open(std::size_t scene, const AVFrame& first, std::int64_t time) {
        const std::int64_t end = m_stamps->End(scene);
        const ClipSpan span{time, end, m_stamps->Tolerance(), time, time, end, end};
        PacketClip& clip =
            m_clips.Open(scene, {}, span, m_job.cut.scenes[scene].place.frame,
                         std::make_unique<VideoEncoder>(m_job.settings.encode, SetupOf(m_job.source, first),
                                                        first, m_job.container));
        for (const Other& other : m_others)
            clip.Offer(*other.packet, other.stream);
    }

    // Audio and subtitles that a clip from here on may need.
    void ForgetBefore(std::int64_t time) {
        constexpr AVRational kSecond{1, 1};
        while (!m_others.empty()) {
            const auto& [packet, stream] = m_others.front();
            const AVRational timeBase = m_job.source.Streams()[static_cast<std::size_t>(stream)]->time_base;
            const std::int64_t last =
                PresentationTime(*packet) + packet->duration + av_rescale_q(1, kSecond, timeBase);
            if (av_compare_ts(last, timeBase, time, m_job.source.Video().time_base) >= 0)
                return;
            m_others.pop_front();
        }
    }

    const CutJob m_job;
    OpenClips m_clips;
    std::optional<SceneStamps> m_stamps; // once a picture is there
    std::deque<Other> m_others;
    std::size_t m_next = 0; // the next scene to be opened
};

} // namespace

void EncodePackets(const CutJob& job) {
    EncodeRun(job).Run();
}

} // namespace scenedetect
