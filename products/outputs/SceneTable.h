// The scenes of a run and what is known of their file: the one record that all outputs are written from.
#pragma once

#include "reading/readers/MediaInfo.h"
#include "reading/timing/FrameNumbering.h"
#include "reading/timing/SampleTable.h"
#include "reading/timing/TimeScale.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace scenedetect {

struct SceneSpan {
    FilePlace start;
    FilePlace end;      ///< exclusive: frame and time after the last frame
    std::string method; ///< how its start was found: "video", "timestamp", ... or "recording", "aspect", ...
    std::int64_t sample = 0;

    [[nodiscard]] std::int64_t FrameCount() const { return end.frame - start.frame; }
};

/// Scenes are in order, each at least one frame, and times never go back. Positions count the frames of the
/// file from 0.
struct SceneTable {
    std::string input; ///< as it was given; "-" is the standard input
    std::string name;  ///< for titles and clips: the file's without its suffix
    TimeScale scale;
    std::optional<SourceTimecode> startTimecode;
    int width = 0;
    int height = 0;
    Ratio pixelAspect{1, 1};
    std::optional<AudioFormat> audio; ///< of the first audio stream
    int quarterTurns = 0;             ///< clockwise, that stand the pictures upright: 0 to 3
    std::int64_t delay = 0;           ///< microseconds from the start of the file to its first frame
    std::int64_t frameCount = 0;
    std::string partial; ///< why the table ends before the input does; empty: it does not
    std::vector<SceneSpan> scenes;
};

/// Whether every scene begins and ends where its frame number times the frame's length says.
[[nodiscard]] bool HasConstantRate(const SceneTable& table);

/// The frame of a constant rate that a place lies at: its frame number, or, at a variable rate, the nearest
/// frame of the nominal one.
[[nodiscard]] std::int64_t EditFrame(const FilePlace& place, const TimeScale& scale);
/// How many of these the file has, as far as the table knows.
[[nodiscard]] std::int64_t EditFrameCount(const SceneTable& table);

/// Numbering of the file's frames: drop-frame as the source timecode is, without one as the rate has it.
[[nodiscard]] FrameNumbering SourceNumbering(const SceneTable& table);
/// The source timecode's count of frames at the file's rate; 0 without one.
[[nodiscard]] std::int64_t SourceStart(const SceneTable& table);

/// The file's own timecode of a place, where that of its first frame is known.
[[nodiscard]] std::string SourceTimecodeText(const FilePlace& place, const TimeScale& scale,
                                             const SourceTimecode& first);

/// A scene on an edit's timeline, in frames of the nominal rate.
struct EditSpan {
    std::size_t scene;       ///< which of the table's, from 0
    std::int64_t start;      ///< in the source's own count
    std::int64_t frameCount; ///< 1 or more
};
/// Without the scenes of variable rates that are shorter than half a frame of the nominal one.
[[nodiscard]] std::vector<EditSpan> EditSpans(const SceneTable& table);

/// The name and the scene's number from 1 on, in three digits or more.
[[nodiscard]] std::string ClipName(const SceneTable& table, std::size_t index);

} // namespace scenedetect
