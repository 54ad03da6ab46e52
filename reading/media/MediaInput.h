// The video stream of a media file: its packets, and how its time stamps are to be read.
#pragma once

#include "reading/ffmpeg/FfmpegPointers.h"
#include "reading/ffmpeg/MediaFile.h"
#include "reading/media/FrameClock.h"
#include "reading/readers/MediaInfo.h"
#include "reading/readers/StreamInput.h"
#include "reading/timing/FilmPart.h"

#include <atomic>
#include <cstdint>
#include <memory>
#include <string>

namespace scenedetect {

/// One thread at a time; `stop`, if any, must outlive the object, may be set by any thread and ends a
/// blocking read.
class MediaInput {
  public:
    /// Opens the file; HostError when it is not one that can be read.
    explicit MediaInput(std::string path, const std::atomic<bool>* stop = nullptr);
    /// The same for a stream.
    MediaInput(std::shared_ptr<StreamInput> stream, const std::atomic<bool>& stop);

    [[nodiscard]] const MediaFile& File() const { return m_file; }
    [[nodiscard]] const std::string& Path() const { return m_file.Path(); }
    /// Tells `part`, which must outlive the object and those that are opened again, of each packet.
    void TellPackets(FilmPart* part) { m_part = part; }
    /// The same file once more, at its beginning; null when it has no name by which it can be opened.
    [[nodiscard]] std::unique_ptr<MediaInput> OpenAgain() const;
    /// Whether the bytes can be read in any order.
    [[nodiscard]] bool IsSeekable() const { return !m_stream || m_stream->IsFile(); }
    /// The part of the file that was read, 0 to 1; negative when its size is unknown.
    [[nodiscard]] double Fraction() const;

    /// The container, by FFmpeg's short name of it ("matroska,webm").
    [[nodiscard]] std::string FormatName() const { return m_file.Context().iformat->name; }
    /// Whether it is a raw DV stream, to be read as bytes.
    [[nodiscard]] bool IsRawDv() const { return m_file.IsFormat("dv"); }
    /// Finds the video stream; HostError when there is none. To be called before what follows.
    void FindVideo();
    [[nodiscard]] AVStream& Video() const { return m_file.Video(); }
    [[nodiscard]] MediaInfo Info() const;
    /// How long after the file's start a picture with this stamp comes; 0 when that is unknown.
    [[nodiscard]] std::int64_t MicrosecondsIn(std::int64_t stamp) const;
    /// Goes to a key frame at or before the stamp, as far as the container can tell. False when it can't.
    [[nodiscard]] bool SeekBefore(std::int64_t stamp);
    /// Goes to this place in the file, wherever its packets begin. False when it can't.
    [[nodiscard]] bool SeekToByte(std::int64_t offset);
    /// How often the pictures are to be turned clockwise by a quarter to stand upright: 0 to 3.
    [[nodiscard]] int QuarterTurns() const;
    /// The shape of a pixel of a picture of the stream; 0/1 when unknown.
    [[nodiscard]] AVRational PixelAspect(AVFrame& picture) const;
    /// How the stream's time stamps are to be read.
    [[nodiscard]] FrameClock::Setup ClockSetup() const;
    /// The next packet of the video stream, owned by the caller; empty ones are left out. False at the end,
    /// also where the file breaks off (then BreakOffReason says why) or the run is stopped. HostError when
    /// reading fails.
    [[nodiscard]] bool ReadPacket(AVPacket& packet);
    [[nodiscard]] const std::string& BreakOffReason() const { return m_breakOffReason; }

  private:
    [[nodiscard]] std::int64_t SizeNow() const;
    [[nodiscard]] bool IsEndMissing() const;

    const std::atomic<bool>* const m_stop;
    const std::shared_ptr<StreamInput> m_stream; // or none
    const FfmpegPtr<AVIOContext> m_bytes;        // of the stream
    MediaFile m_file;
    const std::int64_t m_size;
    FilmPart* m_part = nullptr;
    std::int64_t m_lastStamp = AV_NOPTS_VALUE;
    std::string m_breakOffReason;
};

} // namespace scenedetect
