// Walks an AVI file from its header to the frames of its first video stream.
#pragma once

#include "reading/readers/ByteInput.h"
#include "reading/readers/PictureFormat.h"

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <string>

namespace scenedetect {

/// A video stream as the header declares it.
struct AviVideo {
    int stream = -1; ///< among all streams of the file, from 0; none: negative
    /// Video and audio of DV in one stream, which then declares no format.
    bool isInterleavedDv = false;
    Ratio rate{25, 1};
    PictureFormat format; ///< not checked; imageBytes is left 0
};

/// An audio stream beside it.
struct AviAudio {
    int channels = 0;
    int sampleRate = 0;
};

/// Chunks are walked one after another and never looked up: lists and further RIFF parts are just entered, so
/// that neither an index nor the sizes of the whole need to be there. Sizes are checked against the file's
/// before anything is made of them. One thread at a time.
class AviReader {
  public:
    /// Whether a file that begins with these bytes is one.
    [[nodiscard]] static bool IsAvi(std::span<const std::uint8_t> start);

    /// Reads the header, from the input's start. HostError when it is not that of an AVI file with video.
    explicit AviReader(ByteInput& input);

    [[nodiscard]] const AviVideo& Video() const { return m_video; }
    /// The first audio stream that tells its rate.
    [[nodiscard]] const std::optional<AviAudio>& Audio() const { return m_audio; }

    /// A chunk of the video stream.
    struct Frame {
        std::int64_t number =
            0; ///< in the file, from 0: empty chunks are frames that were dropped, and count
        std::int64_t offset = 0; ///< of its data in the file
        std::uint32_t bytes = 0;
    };
    /// The next one that is not empty; the input stands at its data. Nothing at the end, also where the file
    /// breaks off (then BreakOffReason says why) or the run was stopped. HostError when reading fails.
    [[nodiscard]] std::optional<Frame> Next();
    /// The end of a sentence about the file; empty for a file that ends as it should.
    [[nodiscard]] const std::string& BreakOffReason() const { return m_breakOffReason; }

  private:
    using Fourcc = std::array<char, 4>;
    struct Chunk {
        Fourcc id{};
        Fourcc listType{}; // of a chunk that holds others
        std::uint32_t bytes = 0;
    };

    [[nodiscard]] bool NextChunk(Chunk& chunk);
    [[nodiscard]] std::vector<std::uint8_t> ReadData(std::uint32_t bytes, std::size_t atMost);
    void ReadHeader();
    void ReadStreamHeader(const Chunk& chunk);
    void ReadStreamFormat(const Chunk& chunk);
    void ReadAudioFormat(const Chunk& chunk);
    [[nodiscard]] bool IsOfVideo(const Fourcc& id) const;
    [[nodiscard]] bool IsCut(const Chunk& chunk) const;

    ByteInput& m_input;
    AviVideo m_video;
    std::optional<AviAudio> m_audio;
    int m_streamCount = 0;
    Fourcc m_streamType{};        // of the last
    std::int64_t m_nextChunk = 0; // offset
    std::int64_t m_partEnd = 0;   // where the current RIFF part says it ends; 0 when it does not
    std::int64_t m_nextFrame = 0;
    std::string m_breakOffReason;
};

} // namespace scenedetect
