// A run's figures as a CSV table: what stands in it, for its writer and its reader.
#pragma once

#include "engine/decision/DetectionParameters.h"
#include "reading/timing/SampleTable.h"
#include "reading/timing/TimeScale.h"
#include "scenes/FrameFigures.h"

#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace scenedetect {

// One row a frame, in the order of the samples, all numbers whole:
//   frame        number in the file, from 0
//   difference, level  as they were measured
//   filled       what the difference was taken for; empty where it was taken as it is
//   dark, cut    1 or 0
//   sample       number in the run, from 0 without a gap
//   time         since the first frame, in units of unit-num/unit-den seconds
//   byte         of the frame's data in the file; empty when the container does not tell
//   back2 ... back64, variance, detail  with distances only: those to the frames that many back, empty where
//                the run has none, and the variance and detail of the frame's samples
//   setting, value  about the whole run, one a row from the first on; where there are more settings than
//                frames the last rows have nothing else
// The first setting is the format's number. Fractions are two settings each, since spreadsheet programs take
// 25/1 for a day.
inline constexpr std::string_view kStatsHeader =
    "frame,difference,level,filled,dark,cut,sample,time,byte,setting,value";
inline constexpr std::size_t kFrameColumns = 9; ///< of the frame, before distances and settings
inline constexpr std::string_view kStatsFormatSetting = "format";
inline constexpr std::string_view kStatsFormat = "1";
// With distances.
inline constexpr std::string_view kStatsDistancesHeader =
    "frame,difference,level,filled,dark,cut,sample,time,byte,"
    "back2,back3,back4,back5,back8,back16,back32,back64,variance,detail,setting,value";
inline constexpr std::string_view kStatsDistancesFormat = "2";
inline constexpr std::size_t kStatsDistancesColumns = kDistanceSpans.size() + 2;
// Of a part of a film: what takes the whole to decide (filled, dark, cut) is empty there.
inline constexpr std::string_view kStatsPartFormat = "1-part";

/// What a host notes about the run for itself; any text.
struct StatsNote {
    std::string name; ///< not a name of the settings
    std::string value;

    friend bool operator==(const StatsNote&, const StatsNote&) = default;
};

/// What is the same for all frames of a run.
struct StatsSettings {
    TimeScale scale;
    DetectionParameters parameters; ///< that the run was judged by
    std::vector<StatsNote> notes;
    bool isPart = false;       ///< of a film: nothing is decided yet
    bool hasDistances = false; ///< not of a part
};

struct StatsRow {
    FilePlace place;
    KxFrameFigures figures; ///< the position is the row's number
    KxFrameDistances distances = kWithoutDistances;
};

/// A whole table.
struct Stats {
    std::string path; ///< for messages
    StatsSettings settings;
    std::vector<StatsRow> rows;
};

// The most that a table may hold, so that whoever reckons with it need not look out for overflow.
inline constexpr std::int64_t kMostInFigures = 255;
inline constexpr std::int64_t kMostVariance = 255 * 255 / 4;
inline constexpr std::int64_t kMostDetail = 255 * kDetailScale;
inline constexpr std::int64_t kMostFrames = std::numeric_limits<std::int32_t>::max();
/// Of times, which are counted in other units later on: 68 years.
inline constexpr std::int64_t kMostSeconds = std::numeric_limits<std::int32_t>::max();

/// A field in quotes, short and on one line whatever stands in it.
[[nodiscard]] std::string Quoted(std::string_view field);

/// HostError, with the row, unless all rows could stand in a table: numbered without a gap, frames and times
/// that go forward, all within their bounds. For rows that no table was read for.
void RequireRows(const Stats& stats);

/// The file that was measured, as it was named then; the table's own path where that is not noted.
[[nodiscard]] std::string InputOf(const Stats& stats);

/// A whole number, as all settings are: its name, where it stands, and its range.
struct StatsNumber {
    std::string_view name;
    std::int32_t* value;
    std::int32_t least;
    std::int32_t most;
    std::optional<std::int32_t> absent{}; ///< what it is where the table lacks it; none: it has to be there
};

/// The numbers among the settings, in the order in which they are written.
[[nodiscard]] std::vector<StatsNumber> NumbersOf(StatsSettings& settings);

} // namespace scenedetect
