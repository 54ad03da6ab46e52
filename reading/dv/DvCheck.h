// Whether a DV frame lies in its place, judged by the IDs of its DIF blocks; and the search for the next one.
#pragma once

#include "reading/dv/DvFrame.h"

#include <cstdint>
#include <optional>
#include <span>

namespace scenedetect {

/// How many of the blocks of a frame that begins here bear the ID of their place.
struct DvCheck {
    DvSystem system = DvSystem::Lines525;
    int blocks = 0;       ///< that were there to be looked at: all, or fewer at the end of the file
    int goodBlocks = 0;   ///< a header block that announces the other line system is not among them
    int firstDamaged = 0; ///< number of the first other one; `blocks` when there is none
    int lastGood = -1;    ///< of two in a row: an ID alone may be chance

    /// At least half of its blocks are in their places.
    [[nodiscard]] bool IsPlausible() const { return blocks > 0 && goodBlocks * 2 >= blocks; }
};

/// Blocks that the frame must have for its line system to be told; fewer are no frame.
inline constexpr int kLeastDvBlocks = 8;

/// The line system that most of the headers in their places announce, so that damage to a few can't change
/// it; nothing when they don't say.
[[nodiscard]] std::optional<DvSystem> VoteDvSystem(std::span<const std::uint8_t> data);

/// The line system of what a container holds for one frame; nothing unless it is of that one's size.
[[nodiscard]] std::optional<DvSystem> IdentifyDvFrame(std::span<const std::uint8_t> frame);

/// Checks the frame at the beginning of `data`, as far as that goes.
[[nodiscard]] DvCheck CheckDvFrame(std::span<const std::uint8_t> data, DvSystem system);

/// Whether a block of `frame` is there and bears the ID of its place.
[[nodiscard]] bool IsDvBlockInPlace(std::span<const std::uint8_t> frame, int block);

/// Whether bytes were lost from (or got into) the checked frame: its last block is not in its place, but
/// blocks that belong after the last good one are found elsewhere. `data` begins with the frame and goes on
/// for another unless the file ends.
[[nodiscard]] bool HasDvFrameLostBytes(std::span<const std::uint8_t> data, const DvCheck& check);

/// Whether a frame may begin here beyond doubt: a header block of a first sequence, followed by a plausible
/// frame (or the plausible beginning of one where `data` ends).
[[nodiscard]] bool IsDvFrameStart(std::span<const std::uint8_t> data);

/// Offset of the next such place from `from` on and before `end`; nothing when there is none.
[[nodiscard]] std::optional<std::size_t> FindDvFrame(std::span<const std::uint8_t> data, std::size_t from,
                                                     std::size_t end);

} // namespace scenedetect
