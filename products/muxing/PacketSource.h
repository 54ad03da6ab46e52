// The packets of a file's video stream, of all its audio and of its subtitles.
#pragma once

#include "products/muxing/Container.h"
#include "products/muxing/PacketStamps.h"
#include "reading/ffmpeg/MediaFile.h"

#include <optional>
#include <span>
#include <string>
#include <vector>

namespace scenedetect {

/// One thread at a time.
class PacketSource {
  public:
    /// Opens a regular file. HostError when it can't be read or has no video.
    explicit PacketSource(std::string path) : PacketSource(MediaFile(std::move(path))) {}
    /// A part of one that is raw DV.
    PacketSource(std::string path, const FilePart& part)
        : PacketSource(MediaFile(std::move(path), part, "dv")) {}

    [[nodiscard]] const MediaFile& File() const { return m_file; }
    [[nodiscard]] AVFormatContext& Context() const { return m_file.Context(); }
    [[nodiscard]] AVStream& Video() const { return m_file.Video(); }
    /// The video stream, then the audio streams, then subtitles; those that turned up later are not among
    /// them.
    [[nodiscard]] std::span<AVStream* const> Streams() const { return m_streams; }
    /// Leaves out the subtitles that the container cannot hold. Before anything is read.
    void KeepWhatFits(const Container& container);
    /// Frames per second: the nominal ones.
    [[nodiscard]] AVRational Rate() const;
    /// The timecode of the file's first frame, or of so many frames after it; empty when it has none.
    [[nodiscard]] std::string Timecode() const { return m_file.Timecode(); }
    [[nodiscard]] std::string TimecodeAt(std::int64_t frame) const;

    /// The next packet of one of the streams, owned by the caller, its stamps corrected; empty ones are left
    /// out. Returns the place of its stream in Streams(), or -1 at the end and at damage without end.
    /// HostError when reading fails.
    [[nodiscard]] int Read(AVPacket& packet);

  private:
    explicit PacketSource(MediaFile file);

    void TakeStreams();
    [[nodiscard]] static std::vector<AVStream*> FindStreams(MediaFile& file);

    MediaFile m_file;
    std::vector<AVStream*> m_streams;
    std::optional<PacketStamps> m_stamps;
};

} // namespace scenedetect
