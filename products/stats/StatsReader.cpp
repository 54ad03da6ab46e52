#include "products/stats/StatsReader.h"

#include "reading/base/CsvRecords.h"
#include "reading/base/HostError.h"
#include "reading/base/ListText.h"
#include "reading/readers/StreamInput.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <limits>
#include <optional>
#include <span>
#include <system_error>
#include <utility>
#include <vector>

namespace scenedetect {
namespace {

enum Column { kFrame, kDifference, kLevel, kFilled, kDark, kCut, kSample, kTime, kByte };
constexpr const char* kNames[kFrameColumns] = {"frame", "difference", "level", "filled", "dark",
                                               "cut",   "sample",     "time",  "byte"};
constexpr std::size_t kSettingColumns = 2; // the last: name and value
// So that sums of a few can be reckoned with.
constexpr std::int64_t kMost = std::int64_t{1} << 60;

std::int64_t ParseNumber(const char* name, const std::string& text, std::int64_t least, std::int64_t most) {
    std::int64_t number = 0;
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number);
    if (error != std::errc() || stop != end || number < least || number > most)
        throw HostError(std::string(name) + " is " + Quoted(text) + " where " +
                        (most == kMost && number <= most
                             ? "a whole number from " + std::to_string(least) + " on"
                             : "a whole number of " + std::to_string(least) + " to " + std::to_string(most)) +
                        " should be");
    return number;
}

std::string Join(const std::vector<std::string>& fields) {
    std::string line;
    for (const std::string& field : fields)
        AppendToList(line, ",", field);
    return line;
}

class Parser {
  public:
    /// `stats` tells whether there are distances.
    explicit Parser(Stats& stats)
        : m_stats(stats),
          m_numbers(NumbersOf(stats.settings)),
          m_setting(kFrameColumns + (stats.settings.hasDistances ? kStatsDistancesColumns : 0)) {}

    void Take(std::int64_t line, const std::vector<std::string>& fields) {
        m_line = line;
        if (fields.size() != m_setting + kSettingColumns)
            throw HostError(std::to_string(fields.size()) + " fields where " +
                            std::to_string(m_setting + kSettingColumns) +
                            " should be: the file is damaged or cut short");
        const bool hasFrame = !std::ranges::all_of(std::span(fields).first(m_setting), &std::string::empty);
        // The first may be the format, by which the frame is to be read.
        if (!fields[m_setting].empty())
            TakeSetting(fields[m_setting], fields[m_setting + 1]);
        else if (!hasFrame || !fields[m_setting + 1].empty())
            throw HostError("a setting without a name");
        if (hasFrame)
            TakeFrame(fields);
        m_isAfterFrames = !hasFrame;
        CheckTimes();
    }

    /// Whether no time is beyond reason, once the unit is known, which need not come before the times.
    void CheckTimes() {
        const Ratio unit = m_stats.settings.scale.unit;
        if (!m_hasUnit && !(m_hasUnit = IsGiven("unit-num") && IsGiven("unit-den")))
            return;
        for (const auto& [line, time] : std::exchange(m_unchecked, {}))
            if (time > kMostSeconds * unit.den / unit.num) {
                m_wrongLine = line;
                throw HostError("time is " + std::to_string(time) + ", which is more than " +
                                std::to_string(kMostSeconds) + " seconds");
            }
    }
    /// That an error is about, if that is not the last; else 0.
    [[nodiscard]] std::int64_t WrongLine() const { return m_wrongLine; }

    /// What has no line of its own.
    void Finish() const {
        Require(kStatsFormatSetting);
        for (const StatsNumber& number : m_numbers)
            if (!number.absent)
                Require(number.name);
    }

  private:
    void TakeFrame(const std::vector<std::string>& fields) {
        const auto number = [&](Column column, std::int64_t least, std::int64_t most) {
            return ParseNumber(kNames[column], fields[column], least, most);
        };
        const auto figure = [&](Column column) {
            return static_cast<LONG>(number(column, 0, kMostInFigures));
        };
        if (m_isAfterFrames)
            throw HostError("a frame after the last one: the file is damaged");
        std::vector<StatsRow>& rows = m_stats.rows;
        const auto sample = static_cast<std::int64_t>(rows.size());
        if (number(kSample, 0, std::numeric_limits<std::int32_t>::max()) != sample)
            throw HostError("sample is " + fields[kSample] + " where " + std::to_string(sample) +
                            " should be: rows are missing or in another order");
        StatsRow row;
        row.place.frame = number(kFrame, rows.empty() ? 0 : rows.back().place.frame + 1, kMostFrames);
        row.place.time = number(kTime, rows.empty() ? 0 : rows.back().place.time, kMost);
        m_unchecked.emplace_back(m_line, row.place.time);
        row.place.byteOffset = fields[kByte].empty() ? -1 : number(kByte, 0, kMost);
        row.figures = {.dwPosition = static_cast<ULONG>(sample),
                       .nDifference = figure(kDifference),
                       .nLevel = figure(kLevel),
                       .nFilled = 0,
                       .dwFlags = 0};
        const bool isFilled = !fields[kFilled].empty();
        row.figures.nFilled = isFilled ? figure(kFilled) : row.figures.nDifference;
        if (!m_stats.settings.isPart)
            row.figures.dwFlags = (isFilled ? KxFrameFilled : 0u) | (number(kDark, 0, 1) ? KxFrameDark : 0u) |
                                  (number(kCut, 0, 1) ? KxFrameCut : 0u);
        else if (isFilled || !fields[kDark].empty() || !fields[kCut].empty())
            throw HostError("a decision in a part, where there can be none");
        if (m_stats.settings.hasDistances)
            row.distances = TakeDistances(std::span(fields).subspan(kFrameColumns), sample);
        rows.push_back(row);
    }

    static KxFrameDistances TakeDistances(std::span<const std::string> fields, std::int64_t sample) {
        KxFrameDistances distances = kWithoutDistances;
        for (std::size_t i = 0; i < kDistanceSpans.size(); ++i)
            if (!fields[i].empty() || sample >= kDistanceSpans[i])
                distances.nDistance[i] =
                    static_cast<LONG>(ParseNumber("a distance", fields[i], 0, kMostInFigures));
        distances.nVariance =
            static_cast<LONG>(ParseNumber("variance", fields[kDistanceSpans.size()], 0, kMostVariance));
        distances.nDetail =
            static_cast<LONG>(ParseNumber("detail", fields[kDistanceSpans.size() + 1], 0, kMostDetail));
        return distances;
    }

    void TakeSetting(const std::string& name, const std::string& value) {
        if (name == kStatsFormatSetting)
            TakeFormat(value);
        if (IsGiven(name))
            throw HostError("the setting " + Quoted(name) + " stands there twice");
        m_given.push_back(name);
        if (name == kStatsFormatSetting)
            return;
        const auto known = std::ranges::find(m_numbers, name, &StatsNumber::name);
        if (known != m_numbers.end())
            *known->value =
                static_cast<std::int32_t>(ParseNumber(name.c_str(), value, known->least, known->most));
        else
            m_stats.settings.notes.push_back({name, value});
    }

    void TakeFormat(const std::string& format) {
        StatsSettings& settings = m_stats.settings;
        settings.isPart = format == kStatsPartFormat;
        if (format == kStatsDistancesFormat ? !settings.hasDistances : settings.hasDistances)
            throw HostError("the table's format is " + format + ", which its columns are not of");
        if (!settings.hasDistances && !settings.isPart && format != kStatsFormat)
            throw HostError("the table's format is " + Quoted(format) + ", and only " +
                            std::string(kStatsFormat) + " and " + std::string(kStatsDistancesFormat) +
                            " are known: another version wrote it");
    }

    bool IsGiven(std::string_view name) const { return std::ranges::find(m_given, name) != m_given.end(); }

    void Require(std::string_view name) const {
        if (!IsGiven(name))
            throw HostError("the setting \"" + std::string(name) +
                            "\" is missing: the file is damaged or cut short");
    }

    Stats& m_stats;
    const std::vector<StatsNumber> m_numbers;
    const std::size_t m_setting;      // its column
    std::vector<std::string> m_given; // names of settings
    bool m_isAfterFrames = false;
    std::int64_t m_line = 0;
    std::int64_t m_wrongLine = 0;
    bool m_hasUnit = false;
    std::vector<std::pair<std::int64_t, std::int64_t>> m_unchecked; // lines and times
};

} // namespace

Stats ParseStats(std::string_view text, const std::string& path) {
    Stats stats;
    stats.path = path;
    CsvRecords records(text);
    std::vector<std::string> fields;
    std::optional<Parser> parser;
    try {
        const std::string header = records.Next(fields) ? Join(fields) : "";
        if (header != kStatsHeader && header != kStatsDistancesHeader)
            throw HostError(header.starts_with("frame,difference,")
                                ? "the columns are not those of this version: another one wrote the table"
                                : "no statistics of kxscenes: the line " + std::string(kStatsHeader) +
                                      " should be here");
        stats.settings.hasDistances = header == kStatsDistancesHeader;
        parser.emplace(stats);
        while (records.Next(fields))
            parser->Take(records.Line(), fields);
    } catch (const HostError& error) {
        const std::int64_t line = parser && parser->WrongLine() != 0 ? parser->WrongLine() : records.Line();
        throw HostError(path + ", line " + std::to_string(std::max<std::int64_t>(line, 1)) + ": " +
                        error.what());
    }
    try {
        parser->Finish();
    } catch (const HostError& error) {
        throw HostError(path + ": " + error.what());
    }
    return stats;
}

Stats ReadStats(const std::string& path) {
    return ParseStats(ReadTextFile(path), path);
}

} // namespace scenedetect
