// Counts the video blocks of a DV frame that the playing deck could not read, by what it did about them.
#pragma once

#include <cstdint>
#include <span>

namespace scenedetect {

/// By the STA field of video blocks.
struct BlockStatus {
    std::int64_t fromPrevious = 0; ///< concealed by the same place of the previous frame
    std::int64_t fromNext = 0;     ///< of the next frame
    std::int64_t unspecified = 0;  ///< concealed somehow
    std::int64_t errors = 0;       ///< not concealed
    std::int64_t reserved = 0;     ///< values that have no meaning yet

    [[nodiscard]] std::int64_t Count() const {
        return fromPrevious + fromNext + unspecified + errors + reserved;
    }
    BlockStatus& operator+=(const BlockStatus& other);
    friend bool operator==(const BlockStatus&, const BlockStatus&) = default;
};

/// Of all whole sequences of `frame`. Blocks that lack the ID of their place are no video blocks.
[[nodiscard]] BlockStatus ReadBlockStatus(std::span<const std::uint8_t> frame);

} // namespace scenedetect
