#include "products/cutting/CutPackets.h"

#include "products/cutting/EncodePackets.h"
#include "products/cutting/OpenClips.h"
#include "products/cutting/SceneStamps.h"
#include "products/muxing/PcmPacket.h"
#include "products/muxing/VideoEncoder.h"
#include "reading/base/HostError.h"
#include "reading/ffmpeg/VideoDecoder.h"

extern "C" {
#include <libavutil/mathematics.h>
}

#include <algorithm>
#include <deque>
#include <memory>
#include <string_view>
#include <utility>

namespace scenedetect {
namespace {

bool IsKey(const AVPacket& packet) {
    return (packet.flags & AV_PKT_FLAG_KEY) != 0;
}

// The stamp of time 0, found by the packet of the first picture. Where containers do not tell where packets
// lie, it is the first key frame's: pictures before that can't be decoded.
std::int64_t FindOrigin(const PacketCut& cut) {
    constexpr int kFarthest = 300; // further in the first picture is not
    PacketSource source(cut.path);
    const auto packet = OwnFfmpeg(av_packet_alloc());
    std::optional<std::int64_t> firstKey;
    int seen = 0;
    for (int stream = 0; seen < kFarthest && (stream = source.Read(*packet)) != -1;
         av_packet_unref(packet.get())) {
        const std::int64_t time = PresentationTime(*packet);
        if (stream != 0 || time == AV_NOPTS_VALUE)
            continue;
        ++seen;
        if (cut.firstPicture.byteOffset >= 0 && packet->pos == cut.firstPicture.byteOffset)
            return time -
                   av_rescale_q(cut.firstPicture.time, RationalOf(cut.scale.unit), source.Video().time_base);
        if (IsKey(*packet) && !firstKey)
            firstKey = time;
    }
    return firstKey.value_or(0);
}

std::string EarlyText(std::int64_t frames, std::int64_t keyFrame) {
    return "starts " + FramesText(frames) + " early, at " +
           (keyFrame >= 0 ? "the key frame " + std::to_string(keyFrame) : "a key frame that the file hides");
}

// AVI has no PTS: its audio goes with what the decoder is fed at the time, not with what comes out.
std::int64_t AudioLead(const PacketSource& source, const Container& container) {
    return container.format->name == std::string_view("avi") ? DecodingDelay(source) : 0;
}

// An edit unit of MXF has a packet of every stream, and the libraries leave out the last pictures where audio
// is missing.
std::int64_t AudioTail(const PacketSource& source, const Container& container) {
    return container.format->name == std::string_view("mxf") ? DecodingDelay(source) : 0;
}

Container ContainerOf(const std::string& path, const PacketSource& source, const ClipSettings& settings) {
    if (!settings.container.empty())
        return ContainerNamed(settings.container);
    const Container like = ContainerLike(path, source.Streams());
    if (settings.encode.IsWanted())
        return HasEdits(like) ? like : ContainerNamed("mkv"); // AVI, for one, has no PTS
    return HasWrongIndex(like, *source.Video().codecpar) ? ContainerLike(".mov", source.Streams()) : like;
}

// HostError where encoding or muxing would fail.
void PlanEncoding(const EncodeChoice& choice, PacketSource& source, const Container& container,
                  ClipPlan& plan) {
    VideoDecoder decoder(source.File(), {}, [&source](AVPacket& packet) {
        int stream = 0;
        while ((stream = source.Read(packet)) > 0)
            av_packet_unref(&packet);
        return stream == 0;
    });
    const auto first = OwnFfmpeg(av_frame_alloc());
    if (!decoder.Next(*first))
        throw HostError(source.File().Path() + ": no picture can be decoded");
    const VideoEncoder encoder(choice, SetupOf(source, *first), *first, container);
    if (!encoder.Note().empty())
        plan.notes.push_back(encoder.Note());
    for (const AVStream* stream : source.Streams()) {
        AVCodecParameters codec = *stream->codecpar;
        if (stream == &source.Video())
            codec.codec_id = encoder.Context().codec_id;
        if (!IsSubtitle(*stream) && !CanHold(container, codec))
            throw HostError(source.File().Path() + ": " + RefusalText(container, codec) + Advice(container));
    }
}

class CutRun {
  public:
    explicit CutRun(const CutJob& job)
        : m_job(job),
          m_clips(job),
          m_stamps(job.cut, job.source, FindOrigin(job.cut)),
          m_hasEdits(HasEdits(job.container)),
          m_tolerance(m_stamps.Tolerance()),
          m_audioLead(AudioLead(job.source, job.container)),
          m_audioTail(AudioTail(job.source, job.container)) {}

    void Run() {
        while (m_next < m_job.cut.scenes.size() || !m_clips.IsEmpty()) {
            auto packet = OwnFfmpeg(av_packet_alloc());
            const int stream = m_job.source.Read(*packet);
            if (stream == -1)
                break;
            Take({std::move(packet), stream});
        }
        while (m_next < m_job.cut.scenes.size())
            OpenNext();
        m_clips.FinishAll();
    }

  private:
    struct Held {
        FfmpegPtr<AVPacket> packet;
        int stream;

        [[nodiscard]] bool IsVideo() const { return stream == 0; }
        [[nodiscard]] bool IsKeyFrame() const { return IsVideo() && IsKey(*packet); }
    };

    void Take(Held held) {
        if (held.IsVideo()) {
            m_hasKey = m_hasKey || held.IsKeyFrame();
            if (!m_hasKey)
                return; // can't be decoded
            m_now = std::max(m_now, held.packet->dts);
        }
        // From the time on at which a decoder gets later packets, no key frame before the scene can come.
        while (m_next < m_job.cut.scenes.size() && m_now > m_stamps.Begin(m_next) + 2 * m_tolerance)
            OpenNext();
        m_clips.Offer(*held.packet, held.stream);
        if (m_next < m_job.cut.scenes.size()) {
            const bool isKeyFrame = held.IsKeyFrame();
            m_window.push_back(std::move(held));
            if (isKeyFrame)
                TrimWindow();
        }
        m_clips.FinishComplete(m_now);
    }

    // So that it begins with the key frame of the next scene, as far as that is known, and the audio from
    // there on.
    void TrimWindow() {
        const std::int64_t latest = m_stamps.Begin(m_next) + 2 * m_tolerance;
        const auto last = std::find_if(m_window.rbegin(), m_window.rend(), [&](const Held& held) {
            return held.IsKeyFrame() && PresentationTime(*held.packet) <= latest;
        });
        if (last == m_window.rend())
            return;
        const auto key = std::prev(last.base());
        const AVRational videoTimeBase = m_job.source.Video().time_base;
        const std::int64_t begin = PresentationTime(*key->packet) - m_audioLead;
        const auto isOver = [&](const Held& held) {
            if (held.IsVideo())
                return true;
            const AVRational audioTimeBase =
                m_job.source.Streams()[static_cast<std::size_t>(held.stream)]->time_base;
            const std::int64_t needed = held.packet->duration * (m_hasEdits ? kDecodedBefore : 1);
            return av_compare_ts(PresentationTime(*held.packet) + needed, audioTimeBase, begin,
                                 videoTimeBase) <= 0;
        };
        m_window.erase(std::remove_if(m_window.begin(), key, isOver), key);
    }

    // Called when all packets are there whose PTS lies before the scene.
    void OpenNext() {
        const std::size_t scene = m_next++;
        const auto key = std::ranges::find_if(m_window, &Held::IsVideo);
        if (key == m_window.end())
            return; // the file is shorter than it was
        const std::int64_t begin = m_stamps.Begin(scene);
        // A first picture that is presented before its key frame was decoded without that.
        const std::int64_t keyShow = PresentationTime(*key->packet);
        ClipSpan span{keyShow <= begin + 2 * m_tolerance ? keyShow : begin, m_stamps.End(scene), m_tolerance};
        span.zero = span.audioBegin = span.begin - m_audioLead;
        if (m_hasEdits)
            span.zero = FirstShown(begin);
        span.shownEnd = span.end != INT64_MAX ? span.end : m_stamps.Of(m_job.cut.end);
        if (span.end != INT64_MAX)
            span.audioEnd = span.end + m_audioTail;

        WrittenClip clip;
        clip.framesEarly = std::ranges::count_if(m_window, [&](const Held& held) {
            const std::int64_t time = PresentationTime(*held.packet);
            return held.IsVideo() && time >= span.begin && time < begin;
        });
        const FilePlace& place = m_job.cut.scenes[scene].place;
        const std::int64_t keyFrame = FrameAt(span.begin, place, clip.framesEarly);
        if (clip.framesEarly != 0 && !m_hasEdits)
            clip.note = EarlyText(clip.framesEarly, keyFrame);
        PacketClip& open = m_clips.Open(scene, clip, span, m_hasEdits ? place.frame : keyFrame);
        for (const Held& held : m_window)
            open.Offer(*held.packet, held.stream);
        if (m_next == m_job.cut.scenes.size())
            m_window.clear();
        else
            TrimWindow();
    }

    // The first picture of the scene that starts at `begin`; all packets up to there are held.
    [[nodiscard]] std::int64_t FirstShown(std::int64_t begin) const {
        std::int64_t first = INT64_MAX;
        for (const Held& held : m_window)
            if (const std::int64_t time = PresentationTime(*held.packet); held.IsVideo() && time >= begin)
                first = std::min(first, time);
        return first != INT64_MAX ? first : begin;
    }

    // Where frames that are missing count, the time tells how many they are; else each picture is one.
    [[nodiscard]] std::int64_t FrameAt(std::int64_t stamp, const FilePlace& scene, std::int64_t early) const {
        const Ratio frame = m_job.cut.scale.rate.Inverse();
        if (Rescale(scene.frame, frame, m_job.cut.scale.unit) != scene.time)
            return scene.frame - early;
        return m_stamps.FrameAt(stamp);
    }

    const CutJob m_job;
    OpenClips m_clips;
    const SceneStamps m_stamps;
    const bool m_hasEdits;          // clips begin at their scenes and not at key frames
    const std::int64_t m_tolerance; // by which stamps may be off their frame
    const std::int64_t m_audioLead;
    const std::int64_t m_audioTail;

    std::size_t m_next = 0;         // the next scene to be opened
    std::deque<Held> m_window;      // what its clip may need
    std::int64_t m_now = INT64_MIN; // the latest decoding time
    bool m_hasKey = false;
};

} // namespace

ClipPlan PlanClips(const std::string& path, const ClipSettings& settings) {
    PacketSource source(path);
    const Container container = ContainerOf(path, source, settings);
    ClipPlan plan{container.suffix, {}};
    if (settings.encode.IsWanted())
        PlanEncoding(settings.encode, source, container, plan);
    else if (settings.container.empty() &&
             HasWrongIndex(ContainerLike(path, source.Streams()), *source.Video().codecpar))
        plan.notes.push_back(
            "clips are " + container.suffix +
            " files: for MPEG-2 with B frames FFmpeg's libraries write a wrong index into MXF");
    for (const AVStream* stream : source.Streams())
        if (IsSubtitle(*stream) && !CanHold(container, *stream->codecpar))
            plan.notes.push_back("clips are without its subtitles (" +
                                 std::string(avcodec_get_name(stream->codecpar->codec_id)) + "), which " +
                                 container.format->name + " cannot hold");
    return plan;
}

void CutPackets(const ClipSettings& settings, PacketCut cut, OutputClaims& claims,
                const ClipListener& listener) {
    std::ranges::stable_sort(cut.scenes, {}, [](const PacketCut::Scene& scene) { return scene.place.frame; });
    const auto isDouble = [](const PacketCut::Scene& one, const PacketCut::Scene& next) {
        return one.place.frame == next.place.frame;
    };
    cut.scenes.erase(std::unique(cut.scenes.begin(), cut.scenes.end(), isDouble), cut.scenes.end());
    if (cut.scenes.empty())
        return;
    PacketSource source(cut.path);
    const Container container = ContainerOf(cut.path, source, settings);
    source.KeepWhatFits(container);
    const CutJob job{settings, cut, source, container, claims, listener};
    if (settings.encode.IsWanted())
        EncodePackets(job);
    else
        CutRun(job).Run();
}

} // namespace scenedetect
