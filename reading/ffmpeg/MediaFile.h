// A media file opened with FFmpeg's libraries: the one place that chooses the stream of its pictures, finds
// its timecode, and tells its end from a failure.
#pragma once

#include "reading/base/FilePart.h"

extern "C" {
#include <libavformat/avformat.h>
}

#include <atomic>
#include <cstddef>
#include <memory>
#include <span>
#include <string>

namespace scenedetect {

/// One thread at a time; `stop`, if any, must outlive the object, may be set by any thread and ends a
/// blocking read. No play list makes it open anything but files.
class MediaFile {
  public:
    /// Opens a regular file. HostError when it can't be read.
    explicit MediaFile(std::string path, const std::atomic<bool>* stop = nullptr);
    /// A part of it, by the demuxer of this name.
    MediaFile(std::string path, const FilePart& part, const char* demuxer);
    /// The same by its bytes, which must outlive the object; `name` is for messages.
    MediaFile(std::string name, AVIOContext& bytes, const std::atomic<bool>* stop);

    [[nodiscard]] const std::string& Path() const { return m_path; }
    [[nodiscard]] AVFormatContext& Context() const { return *m_context; }
    [[nodiscard]] bool IsStopped() const { return m_stop && *m_stop; }
    /// Whether the demuxer has this name among its short ones.
    [[nodiscard]] bool IsFormat(const char* name) const;
    /// Whether streams may have been joined, so that a stamp may come more than once.
    [[nodiscard]] bool StampsMayJump() const;

    /// Finds the video stream; HostError when there is none. To be called before what follows.
    void FindVideo();
    [[nodiscard]] AVStream& Video() const { return *m_video; }
    [[nodiscard]] std::span<AVStream* const> Streams() const;
    /// Only packets of these streams are read from now on.
    void ReadOnly(std::span<AVStream* const> streams);
    /// Frames per second as the libraries guess them; 0/1 when they can't.
    [[nodiscard]] AVRational GuessedRate() const;
    /// The timecode of the first frame, as the container has it; empty without one.
    [[nodiscard]] std::string Timecode() const;

    /// The next packet, owned by the caller. Otherwise an AVERROR: AVERROR_EOF at the end,
    /// AVERROR_INVALIDDATA where damage hides the rest, AVERROR_EXIT when stopped. HostError when reading
    /// fails.
    [[nodiscard]] int Read(AVPacket& packet);
    /// HostError for an error of the libraries.
    [[noreturn]] void Fail(int code) const;

  private:
    void Open(const char* url, const char* demuxer, AVIOContext* bytes);

    struct Closer {
        void operator()(AVFormatContext* context) const { avformat_close_input(&context); }
    };

    const std::string m_path;
    const std::atomic<bool>* const m_stop;
    const std::size_t m_errorsBefore; // of other files on this thread
    std::unique_ptr<AVFormatContext, Closer> m_context;
    AVStream* m_video = nullptr;
};

} // namespace scenedetect
