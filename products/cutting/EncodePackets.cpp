#include "products/cutting/EncodePackets.h"

#include "products/cutting/PacketClip.h"
#include "products/cutting/SceneStamps.h"
#include "products/muxing/VideoEncoder.h"
#include "reading/ffmpeg/VideoDecoder.h"

#include <deque>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

namespace scenedetect {
namespace {

class EncodeRun {
  public:
    EncodeRun(const ClipSettings& settings, const PacketCut& cut, PacketSource& source,
              const Container& container, OutputClaims& claims, const ClipListener& listener)
        : m_settings(settings),
          m_cut(cut),
          m_container(container),
          m_claims(claims),
          m_listener(listener),
          m_source(source) {}

    void Run() {
        VideoDecoder decoder(m_source.File(), {}, [this](AVPacket& packet) { return ReadVideo(packet); });
        const auto picture = OwnFfmpeg(av_frame_alloc());
        while ((m_next < m_cut.scenes.size() || !m_open.empty()) && decoder.Next(*picture))
            Take(*picture);
        for (const auto& clip : m_open)
            m_listener(clip->Finish());
    }

  private:
    struct Other {
        FfmpegPtr<AVPacket> packet;
        int stream;
    };

    // The next packet of the video; others go to the clips on the way.
    bool ReadVideo(AVPacket& packet) {
        int stream = 0;
        for (; (stream = m_source.Read(packet)) > 0; av_packet_unref(&packet)) {
            for (const auto& clip : m_open)
                clip->Offer(packet, stream);
            m_others.push_back({OwnFfmpeg(av_packet_clone(&packet)), stream});
        }
        return stream == 0;
    }

    void Take(const AVFrame& picture) {
        const std::int64_t time = picture.best_effort_timestamp;
        if (time == AV_NOPTS_VALUE)
            return;
        if (!m_stamps) // times of the first pass count from the same picture
            m_stamps.emplace(m_cut, m_source,
                             time - av_rescale_q(m_cut.firstPicture.time, RationalOf(m_cut.scale.unit),
                                                 m_source.Video().time_base));
        for (; m_next < m_cut.scenes.size() && m_stamps->Begin(m_next) <= time; ++m_next)
            if (time < m_stamps->End(m_next) - m_stamps->Tolerance())
                Open(m_next, picture, time);
        for (const auto& clip : m_open)
            clip->OfferPicture(picture, time);
        std::erase_if(m_open, [&](const std::unique_ptr<PacketClip>& clip) {
            if (!clip->IsComplete(time))
                return false;
            m_listener(clip->Finish());
            return true;
        });
        ForgetBefore(time);
    }

    void Open(std::size_t scene, const AVFrame& first, std::int64_t time) {
        const PacketCut::Scene& cut = m_cut.scenes[scene];
        const std::int64_t end = m_stamps->End(scene);
        const ClipSpan span{time, end, m_stamps->Tolerance(), time, time, end, end};
        WrittenClip clip;
        clip.firstFrame = cut.place.frame;
        clip.hidesOthers = HasEdits(m_container);
        clip.path = ClaimClipPath(m_settings, cut.names, m_container.suffix, m_claims);
        m_open.push_back(std::make_unique<PacketClip>(
            clip, m_settings.existing, m_container, m_source, span, m_source.TimecodeAt(cut.place.frame),
            std::make_unique<VideoEncoder>(m_settings.encode, SetupOf(m_source, first), first, m_container)));
        for (const Other& other : m_others)
            m_open.back()->Offer(*other.packet, other.stream);
    }

    // Audio and subtitles that a clip from here on may need.
    void ForgetBefore(std::int64_t time) {
        constexpr AVRational kSecond{1, 1};
        while (!m_others.empty()) {
            const auto& [packet, stream] = m_others.front();
            const AVRational timeBase = m_source.Streams()[static_cast<std::size_t>(stream)]->time_base;
            const std::int64_t last =
                PresentationTime(*packet) + packet->duration + av_rescale_q(1, kSecond, timeBase);
            if (av_compare_ts(last, timeBase, time, m_source.Video().time_base) >= 0)
                return;
            m_others.pop_front();
        }
    }

    const ClipSettings& m_settings;
    const PacketCut& m_cut;
    const Container& m_container;
    OutputClaims& m_claims;
    const ClipListener& m_listener;
    PacketSource& m_source;
    std::optional<SceneStamps> m_stamps; // once a picture is there
    std::deque<Other> m_others;
    std::size_t m_next = 0; // the next scene to be opened
    std::vector<std::unique_ptr<PacketClip>> m_open;
};

} // namespace

void EncodePackets(const ClipSettings& settings, const PacketCut& cut, PacketSource& source,
                   const Container& container, OutputClaims& claims, const ClipListener& listener) {
    EncodeRun(settings, cut, source, container, claims, listener).Run();
}

} // namespace scenedetect
