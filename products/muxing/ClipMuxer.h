// Puts packets into a container, without touching what is in them.
#pragma once

#include "products/files/OutputFile.h"
#include "products/muxing/Container.h"

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
}

#include <memory>
#include <span>
#include <string>
#include <vector>

namespace scenedetect {

class PacketSource;

/// Writes to the file under its temporary name; Finish does not commit it. HostError when the container
/// refuses the streams or writing fails, with the final name. One thread at a time.
class ClipMuxer {
  public:
    /// With the streams of the source, their properties and its metadata. `timecode` is the clip's own, or
    /// empty. With an encoder its packets are the video, in its time base.
    ClipMuxer(OutputFile& file, const Container& container, const PacketSource& source,
              const std::string& timecode, const AVCodecContext* encoder = nullptr);
    ~ClipMuxer();
    ClipMuxer(const ClipMuxer&) = delete;
    ClipMuxer& operator=(const ClipMuxer&) = delete;

    /// `stream` is a place in the source's streams, in whose time base the packet's stamps are. The packet is
    /// emptied.
    void Write(AVPacket& packet, int stream);
    void Finish();
    /// Once finished.
    [[nodiscard]] std::int64_t Size() const { return m_size; }

  private:
    [[noreturn]] void Fail(int code) const;
    void Require(int code) const;
    [[nodiscard]] int WriteHeader();
    void AddStream(const AVStream& source, AVRational rate, const AVCodecContext* encoder);

    OutputFile& m_file;
    const Container m_container;
    AVFormatContext* m_context = nullptr;
    struct Track {
        AVRational timeBase; // of the source's stream
        std::int64_t lastDts = INT64_MIN;
    };
    std::vector<Track> m_tracks;
    std::int64_t m_size = 0;
};

} // namespace scenedetect
