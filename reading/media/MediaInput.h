// A media file opened with FFmpeg's libraries: its video stream and the packets of that.
#pragma once

#include "reading/ffmpeg/FfmpegPointers.h"
#include "reading/media/FrameClock.h"
#include "reading/media/StreamInput.h"
#include "reading/readers/MediaInfo.h"

extern "C" {
#include <libavformat/avformat.h>
}

#include <atomic>
#include <cstdint>
#include <memory>
#include <string>

namespace scenedetect {

/// One thread at a time; `stop`, which must outlive the object, may be set by any and ends a blocking read.
class MediaInput {
  public:
    /// Opens the file; HostError when it is not one that can be read.
    MediaInput(std::string path, const std::atomic<bool>& stop);
    /// The same for a stream.
    MediaInput(std::shared_ptr<StreamInput> stream, const std::atomic<bool>& stop);
    ~MediaInput();
    MediaInput(const MediaInput&) = delete;
    MediaInput& operator=(const MediaInput&) = delete;

    [[nodiscard]] const std::string& Path() const { return m_path; }
    /// Whether the run was stopped from outside; what was read last may then be cut short.
    [[nodiscard]] bool IsStopped() const { return m_stop; }
    /// The part of the file that was read, 0 to 1; negative when its size is unknown.
    [[nodiscard]] double Fraction() const;

    /// The container, by FFmpeg's short name of it ("matroska,webm").
    [[nodiscard]] std::string FormatName() const;
    /// Whether it is a raw DV stream, to be read as bytes.
    [[nodiscard]] bool IsRawDv() const;
    /// Finds the video stream; HostError when there is none. To be called before what follows.
    void FindVideo();
    [[nodiscard]] AVStream& Video() const { return *m_video; }
    [[nodiscard]] bool IsAvi() const;
    [[nodiscard]] MediaInfo Info() const;
    /// A decoder for the stream, on as many threads (0: one a core). HostError when there is none.
    [[nodiscard]] FfmpegPtr<AVCodecContext> OpenDecoder(int threads) const;
    /// Goes to a key frame at or before the stamp, as far as the container can tell. False when it can't.
    [[nodiscard]] bool SeekBefore(std::int64_t stamp);
    /// Goes to this place in the file, wherever its packets begin. False when it can't.
    [[nodiscard]] bool SeekToByte(std::int64_t offset);
    /// Whether streams may have been joined, so that a stamp may come more than once.
    [[nodiscard]] bool StampsMayJump() const;
    /// How often the pictures are to be turned clockwise by a quarter to stand upright: 0 to 3.
    [[nodiscard]] int QuarterTurns() const;
    /// The shape of a pixel of a picture of the stream; 0/1 when unknown.
    [[nodiscard]] AVRational PixelAspect(AVFrame& picture) const;
    /// How the stream's time stamps are to be read.
    [[nodiscard]] FrameClock::Setup ClockSetup() const;
    /// The next packet of the video stream, owned by the caller; empty ones are left out. False at the end,
    /// also where the file breaks off (then BreakOffReason says why) or `stop` is set. HostError when reading
    /// fails.
    [[nodiscard]] bool ReadPacket(AVPacket& packet);
    [[nodiscard]] const std::string& BreakOffReason() const { return m_breakOffReason; }

  private:
    [[noreturn]] void Fail(int code) const;
    void Open(const char* url);
    [[nodiscard]] bool IsEndMissing() const;

    const std::string m_path;
    const std::atomic<bool>& m_stop;
    std::shared_ptr<StreamInput> m_stream; // or none
    FfmpegPtr<AVIOContext> m_reading;      // of the stream
    AVFormatContext* m_context = nullptr;
    AVStream* m_video = nullptr;
    std::int64_t m_size = 0;
    std::int64_t m_lastStamp = AV_NOPTS_VALUE;
    std::string m_breakOffReason;
};

} // namespace scenedetect
