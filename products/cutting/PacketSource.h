// The packets of a file's video stream and of all its sound.
#pragma once

#include "products/cutting/PacketStamps.h"

extern "C" {
#include <libavformat/avformat.h>
}

#include <atomic>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace scenedetect {

/// One thread at a time; `stop`, which must outlive the object, may be set by any.
class PacketSource {
  public:
    /// Opens a regular file, as `format` if that is named (a demuxer's name). HostError when it can't be read
    /// or has no video.
    PacketSource(std::string path, const std::atomic<bool>& stop, const char* format = nullptr);
    ~PacketSource();
    PacketSource(const PacketSource&) = delete;
    PacketSource& operator=(const PacketSource&) = delete;

    [[nodiscard]] const std::string& Path() const { return m_path; }
    [[nodiscard]] AVFormatContext& Context() const { return *m_context; }
    [[nodiscard]] AVStream& Video() const { return *m_streams.front(); }
    /// The video stream, then the audio streams; those that turned up later are not among them.
    [[nodiscard]] std::span<AVStream* const> Streams() const { return m_streams; }
    /// Frames per second: the nominal ones.
    [[nodiscard]] AVRational Rate() const;
    /// The timecode of the file's first frame; empty when it has none.
    [[nodiscard]] std::string Timecode() const;

    /// The next packet of one of the streams, owned by the caller, its stamps corrected; empty ones are left
    /// out. Returns the place of its stream in Streams(), or -1 at the end, at damage without end and when
    /// stopped. HostError when the device fails.
    [[nodiscard]] int Read(AVPacket& packet);

  private:
    [[noreturn]] void Fail(int code);
    void FindStreams();

    const std::string m_path;
    const std::atomic<bool>& m_stop;
    AVFormatContext* m_context = nullptr;
    std::vector<AVStream*> m_streams;
    std::optional<PacketStamps> m_stamps;
};

} // namespace scenedetect
