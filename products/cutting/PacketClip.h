// One clip of a file, to which packets are offered in the order of the file.
#pragma once

#include "products/clips/ClipSettings.h"
#include "products/files/OutputFile.h"
#include "products/muxing/ClipMuxer.h"
#include "products/muxing/PacketSource.h"
#include "reading/ffmpeg/FfmpegPointers.h"
#include "reading/ffmpeg/Stamps.h"

extern "C" {
#include <libavutil/mathematics.h>
}

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace scenedetect {

class VideoEncoder;

/// By how much pictures come out of the decoder after they went in, in the video stream's time base.
[[nodiscard]] inline std::int64_t DecodingDelay(const PacketSource& source) {
    const AVStream& video = source.Video();
    return av_rescale_q(video.codecpar->video_delay, av_inv_q(source.Rate()), video.time_base);
}

/// Where a clip lies, in the video stream's time base.
struct ClipSpan {
    std::int64_t begin = 0;       ///< the first picture of the clip: a key frame
    std::int64_t end = INT64_MAX; ///< the first picture that is not of its scene any more
    std::int64_t tolerance = 0;   ///< by which that may come early
    std::int64_t zero = 0;        ///< the time that becomes 0; what is before it is hidden by edits
    std::int64_t audioBegin = 0;
    std::int64_t audioEnd = INT64_MAX;
    std::int64_t shownEnd = 0; ///< the end, or that of the file as far as it is known

    [[nodiscard]] bool IsBefore(std::int64_t time) const {
        return end == INT64_MAX || time < end - tolerance;
    }
};

/// One thread at a time; HostError as ClipMuxer's.
class PacketClip {
  public:
    /// `clip` has its path, first frame, frames early, note and whether it hides frames. `source` must
    /// outlive the object.
    /// With an encoder the video is made of pictures.
    PacketClip(const WrittenClip& clip, Existing existing, const Container& container,
               const PacketSource& source, const ClipSpan& span, const std::string& timecode,
               std::unique_ptr<VideoEncoder> encoder = nullptr);
    ~PacketClip();

    /// Takes what belongs to the clip: of the video, all up to the last packet that is presented before the
    /// end; of the audio, what lies in the span. `stream` is a place in the source's streams.
    void Offer(const AVPacket& packet, int stream);
    /// The next picture of the source, encoded if it is in the span.
    void OfferPicture(const AVFrame& picture, std::int64_t time);
    /// Whether no packet to come can belong to it; `now` is the time from which on the video's decoder is
    /// fed, or that of the latest picture.
    [[nodiscard]] bool IsComplete(std::int64_t now) const;
    /// Gives the file its name.
    [[nodiscard]] WrittenClip Finish();

  private:
    void OfferVideo(const AVPacket& packet);
    void WriteHeld();
    [[nodiscard]] bool IsNoSeekPoint(std::int64_t dts) const;
    void Write(FfmpegPtr<AVPacket> packet, int stream);

    WrittenClip m_clip;
    const PacketSource& m_source;
    const ClipSpan m_span;
    const std::int64_t m_delay; // from DTS to PTS, at most, where packets do not tell
    std::int64_t m_firstDts = 0;
    std::int64_t m_shownEnd; // where pictures after the end begin, if they are there, else the end
    const std::unique_ptr<VideoEncoder> m_encoder;
    OutputFile m_file;
    ClipMuxer m_muxer;
    // The key frame until its follower is there; those that are presented after the end, but that an earlier
    // picture may need.
    std::vector<FfmpegPtr<AVPacket>> m_held;
    std::vector<bool> m_hasPassed; // by stream: audio beyond the end was there
};

} // namespace scenedetect
