// One clip of a file, to which packets are offered in the order of the file.
#pragma once

#include "products/cutting/ClipMuxer.h"
#include "products/cutting/ClipSettings.h"
#include "products/cutting/PacketSource.h"
#include "products/files/OutputFile.h"
#include "reading/ffmpeg/FfmpegPointers.h"

extern "C" {
#include <libavutil/mathematics.h>
}

#include <cstdint>
#include <string>
#include <vector>

namespace scenedetect {

/// When a packet shows or sounds, as far as the container tells: in the stream's unit, or AV_NOPTS_VALUE.
[[nodiscard]] inline std::int64_t ShowTime(const AVPacket& packet) {
    return packet.pts != AV_NOPTS_VALUE ? packet.pts : packet.dts;
}

/// By how much pictures come out of the decoder after they went in, in units of the video stream.
[[nodiscard]] inline std::int64_t DecodingDelay(const PacketSource& source) {
    const AVStream& video = source.Video();
    return av_rescale_q(video.codecpar->video_delay, av_inv_q(source.Rate()), video.time_base);
}

/// Where a clip lies, in units of the video stream.
struct ClipSpan {
    std::int64_t begin = 0;       ///< the first picture of the clip: a key frame
    std::int64_t end = INT64_MAX; ///< the first picture that is not of its scene any more
    std::int64_t tolerance = 0;   ///< by which that may show early
    std::int64_t zero = 0;        ///< the time that becomes 0; sound is there from then on
    std::int64_t soundEnd = INT64_MAX;

    [[nodiscard]] bool IsBefore(std::int64_t show) const {
        return end == INT64_MAX || show < end - tolerance;
    }
};

/// One thread at a time; HostError as ClipMuxer's.
class PacketClip {
  public:
    /// `clip` has its path, first frame, frames early and note. `source` must outlive the object.
    PacketClip(const WrittenClip& clip, Existing existing, const Container& container,
               const PacketSource& source, const ClipSpan& span, const std::string& timecode);

    /// Takes what belongs to the clip: of the video, all up to the last packet that shows before the end; of
    /// the sound, what lies in the span. `stream` is a place in the source's streams.
    void Offer(const AVPacket& packet, int stream);
    /// Whether no packet to come can belong to it; `now` is the time from which on the video's decoder is
    /// fed.
    [[nodiscard]] bool IsComplete(std::int64_t now) const;
    /// Gives the file its name.
    [[nodiscard]] WrittenClip Finish();

  private:
    void OfferVideo(const AVPacket& packet);
    void WriteHeld();
    void Write(FfmpegPtr<AVPacket> packet, int stream);

    WrittenClip m_clip;
    const PacketSource& m_source;
    const ClipSpan m_span;
    const std::int64_t m_delay; // of showing after decoding, at most, where packets do not tell
    OutputFile m_file;
    ClipMuxer m_muxer;
    // The key frame until its follower is there; those that show after the end, but that an earlier picture
    // may need.
    std::vector<FfmpegPtr<AVPacket>> m_held;
    std::vector<bool> m_hasPassed; // by stream: sound beyond the end was there
};

} // namespace scenedetect
