// The scenes of a run and what is known of their file: the one record that all outputs are written from.
#pragma once

#include "reading/dv/PackText.h"
#include "reading/readers/MediaInfo.h"
#include "reading/timing/FrameNumbering.h"
#include "reading/timing/SampleTable.h"
#include "reading/timing/TimeScale.h"

#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <vector>

namespace scenedetect {

struct SceneSpan {
    FilePlace start;
    FilePlace end;      ///< exclusive: frame and time after the last frame
    std::string method; ///< how its start was found: "video", "timestamp", ... or "recording", "aspect", ...
    std::int64_t sample = 0;
    TapeTexts tape{};   ///< what its first frame says, if that is DV
    std::string name{}; ///< that a person gave it; plain, of one line

    [[nodiscard]] std::int64_t FrameCount() const { return end.frame - start.frame; }
};

/// What lists tell of the tape with each scene.
struct TapeColumn {
    const char* key;  ///< in JSON, as in the tape log
    const char* name; ///< of the CSV's column
    std::string TapeTexts::*text;
};

inline constexpr TapeColumn kTapeColumns[] = {{"timecode", "Tape Timecode", &TapeTexts::timecode},
                                              {"recording_date", "Recording Date", &TapeTexts::date},
                                              {"recording_time", "Recording Time", &TapeTexts::time},
                                              {"aspect", "Aspect", &TapeTexts::aspect},
                                              {"audio", "Audio", &TapeTexts::audio}};

/// Frames that follow each other and bear the same date and time of recording.
struct RecordedSpan {
    FilePlace start;
    FilePlace end; ///< exclusive
    std::string text;
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
    std::optional<std::vector<RecordedSpan>> recorded; ///< none: the frames were not asked
};

/// Whether every scene begins and ends where its frame number times the frame's length says.
[[nodiscard]] bool HasConstantRate(const SceneTable& table);

/// The frame of a constant rate that a place lies at: its frame number, or, at a variable rate, the nearest
/// frame of the nominal one.
[[nodiscard]] std::int64_t EditFrame(const FilePlace& place, const TimeScale& scale);
/// How many of these the file has, as far as the table knows.
[[nodiscard]] std::int64_t EditFrameCount(const SceneTable& table);

/// HostError, with `format`, for the standard input, which a list can't point to.
void RequireMediaUrl(const SceneTable& table, const std::string& format);

/// A rate as editing programs name it: whole, or slower by a thousandth.
struct NominalRate {
    std::int32_t timebase;
    bool isNtsc;
};
/// HostError, with `format`, for any other rate, and for more than `most` frames per second.
[[nodiscard]] NominalRate NominalRateOf(const SceneTable& table, const std::string& format,
                                        std::int32_t most = std::numeric_limits<std::int32_t>::max());

/// Numbering of the file's frames: drop-frame as the source timecode is, without one as the rate has it.
[[nodiscard]] FrameNumbering SourceNumbering(const SceneTable& table);
/// The source timecode's count of frames at the file's rate; 0 without one.
[[nodiscard]] std::int64_t SourceStart(const SceneTable& table);

/// The file's own timecode of a place, where that of its first frame is known.
[[nodiscard]] std::string SourceTimecodeText(const FilePlace& place, const TimeScale& scale,
                                             const SourceTimecode& first);

/// The timecode of a scene that begins here: the tape's, or the file's own; empty where there is neither.
[[nodiscard]] std::string SceneTimecode(const TapeTexts& tape, const FilePlace& place, const TimeScale& scale,
                                        const std::optional<SourceTimecode>& first);

/// A scene on an edit's timeline, in frames of the nominal rate.
struct EditSpan {
    std::size_t scene;       ///< which of the table's, from 0
    std::int64_t start;      ///< in the source's own count
    std::int64_t frameCount; ///< 1 or more
};
/// Without the scenes of variable rates that are shorter than half a frame of the nominal one.
[[nodiscard]] std::vector<EditSpan> EditSpans(const SceneTable& table);

/// The time of a place since the start of the file, where other streams may begin before the pictures.
[[nodiscard]] std::int64_t MediaTime(const SceneTable& table, const FilePlace& place);

/// The scene's name; without one the table's, and the scene's number from 1 on, in three digits or more.
[[nodiscard]] std::string ClipName(const SceneTable& table, std::size_t index);

} // namespace scenedetect
