// One row of the tape log.
#pragma once

#include "products/tape/BlockStatus.h"
#include "reading/dv/DvPacks.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace scenedetect {

/// In the order of rows that begin at one frame. docs/tape-log.md tells what each means.
enum class TapeEvent {
    UnknownBytes,
    Unreadable,
    MissingBytes,
    MissingFrames,
    LineSystemChange,
    RecordingBreak,
    TimecodeJump,
    RecorderStart,
    Recording,
    RecordingContinued,
    AspectChange,
    AudioChange,
    RecorderStop,
    NoTimecode,
    NoRecordingDate,
    NoRecordingTime,
    NoAudioFormat,
    StrayTimecode,
    StrayRecordingTime,
    StrayAspect,
    StrayAudioFormat,
    ConcealedBlocks,
    AudioErrors,
    MutedAudio,
    DamagedBlocks,
    CutEnd,
};
inline constexpr std::size_t kTapeEvents = static_cast<std::size_t>(TapeEvent::CutEnd) + 1;

struct TapeEventKind {
    std::string_view name;
    std::string_view unit; ///< of the size; empty where it has none
    bool isScattered; ///< rows less than a second apart make one; of others only those of adjacent frames
};
[[nodiscard]] const TapeEventKind& KindOf(TapeEvent event);

struct TapeRow {
    TapeEvent event = TapeEvent::Recording;
    std::int64_t frame = 0;       ///< the first
    std::int64_t lastFrame = 0;   ///< of those that the row is about
    std::int64_t frames = 0;      ///< how many it is about; of scattered ones not all up to the last
    std::int64_t byteOffset = -1; ///< below 0 when the container does not tell
    std::optional<DvSystem> system;
    DvPacks packs; ///< of the first frame; empty for frames that were not handed out
    std::optional<std::int64_t> size;
    BlockStatus blocks; ///< of concealed ones
    std::string before; ///< of a change: what was
};

} // namespace scenedetect
