// The containers that clips are put into, and what they can hold.
#pragma once

#include <span>
#include <string>

struct AVCodecParameters;
struct AVOutputFormat;
struct AVStream;

namespace scenedetect {

struct Container {
    const AVOutputFormat* format = nullptr;
    std::string suffix; ///< of its files, with the dot
};

/// The container of this name: "avi", "mov", "mkv", "mp4". HostError when the libraries can't write it.
[[nodiscard]] Container ContainerNamed(const std::string& name);
/// The one that the suffix of `source` stands for, or Matroska where that can't be written or can't hold all
/// of these streams but subtitles. Raw DV counts as such: writing it would change the frames.
[[nodiscard]] Container ContainerLike(const std::string& source, std::span<AVStream* const> streams);

/// Whether its files can tell by edit lists what of their packets is presented.
[[nodiscard]] bool HasEdits(const Container& container);
/// Whether FFmpeg's libraries write a wrong index for such a stream.
[[nodiscard]] bool HasWrongIndex(const Container& container, const AVCodecParameters& video);
[[nodiscard]] bool IsSubtitle(const AVStream& stream);
/// False when the container is known not to take the codec.
[[nodiscard]] bool CanHold(const Container& container, const AVCodecParameters& codec);
/// "; --container mkv holds most", if this is another.
[[nodiscard]] std::string Advice(const Container& container);
/// "avi cannot hold pcm_s24be".
[[nodiscard]] std::string RefusalText(const Container& container, const AVCodecParameters& codec);

} // namespace scenedetect
