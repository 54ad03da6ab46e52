// The decode loop: packets in, pictures out.
#pragma once

#include "reading/ffmpeg/DecodingThread.h"
#include "reading/ffmpeg/FfmpegPointers.h"
#include "reading/ffmpeg/MediaFile.h"

#include <exception>
#include <functional>
#include <optional>
#include <string>

namespace scenedetect {

struct Decoding {
    int threads = 0; ///< 0: one a core
    bool isFast =
        false; ///< with shortcuts, where the decoder has some that keep the mean luma of small blocks
    /// Decodes the next pictures while one is looked at, where these are large and the decoder has no threads
    /// that do.
    bool isAhead = false;
};

/// Decodes the video stream of a file. One thread at a time; the decoder has its own besides.
class VideoDecoder {
  public:
    /// The next packet; false at the end.
    using Source = std::function<bool(AVPacket&)>;
    /// Told of each packet that can't be decoded; decoding goes on.
    using Damaged = std::function<void()>;

    /// HostError when there is no such decoder.
    VideoDecoder(const MediaFile& file, const Decoding& decoding, Source source, Damaged damaged = {});

    /// The next picture in presentation order; false when there are no more.
    [[nodiscard]] bool Next(AVFrame& picture);
    /// Packets go on elsewhere in the file.
    void Flush();
    [[nodiscard]] std::string Name() const { return m_decoder->codec->name; }
    /// What it does to be fast, for people: "without loop filter"; empty where it does nothing.
    [[nodiscard]] std::string Shortcut() const;
    /// How often the sides of its pictures are halved: 0 to 3.
    [[nodiscard]] int Halvings() const { return m_decoder->lowres; }

  private:
    void StartAhead();
    [[nodiscard]] bool Feed();

    const Source m_source;
    const Damaged m_damaged;
    const FfmpegPtr<AVCodecContext> m_decoder;
    Pictures m_pictures;        // decoded, and not taken yet
    bool m_isDraining = false;  // the last packet was read
    std::exception_ptr m_error; // of the source, until the pictures before it are taken
    std::optional<DecodingThread> m_ahead;
};

} // namespace scenedetect
