// Raw DV into a container: pictures as they are, and the audio that lies in the frames as streams of its own.
#pragma once

#include "products/cutting/Container.h"
#include "products/files/OutputFile.h"

#include "engine/Dif.h"

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <string>

namespace scenedetect {

struct RemuxedDv {
    std::int64_t frames = 0;
    std::int64_t bytes = 0; ///< of the container's file
};

/// FFmpeg's libraries go by a frame's first block, and lose track of the frames where that is damaged: the
/// block to write instead, made from those that begin the frame's other sequences. Nothing when it is valid.
[[nodiscard]] std::optional<std::array<std::uint8_t, kDifBlockBytes>>
MendedHeader(std::span<const std::uint8_t> frame);

/// `raw` holds whole frames of one line system and nothing else. Commits nothing. HostError when the
/// container refuses DV, or reading or writing fails.
RemuxedDv RemuxDv(const std::string& raw, const Container& container, OutputFile& target);

} // namespace scenedetect
