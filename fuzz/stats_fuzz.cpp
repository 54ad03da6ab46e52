// Tables of figures: refused in one line, or read so that writing them again loses nothing.
#include "fuzz/Input.h"
#include "products/stats/DecideAgain.h"
#include "products/stats/StatsPart.h"
#include "products/stats/StatsReader.h"
#include "products/stats/StatsWriter.h"
#include "reading/base/CsvField.h"
#include "reading/base/CsvRecords.h"
#include "reading/base/HostError.h"

#include <algorithm>
#include <optional>

using namespace scenedetect;
using fuzz::Require;

namespace {

std::optional<Stats> Parse(std::string_view text) {
    try {
        return ParseStats(text, "table");
    } catch (const HostError& error) {
        Require(std::string_view(error.what()).find('\n') == std::string_view::npos);
        return std::nullopt;
    }
}

Stats Of(Stats stats, const char* part) {
    for (StatsNote& note : stats.settings.notes)
        if (note.name == "part")
            note.value = part;
    return stats;
}

std::optional<Stats> Join(std::vector<Stats> parts) {
    try {
        return JoinParts(std::move(parts)).stats;
    } catch (const HostError& error) {
        Require(std::string_view(error.what()).find('\n') == std::string_view::npos);
        return std::nullopt;
    }
}

std::string Write(const Stats& stats) {
    std::string text;
    StatsWriter writer(stats.settings, [&text](std::string_view block) { text += block; });
    for (const StatsRow& row : stats.rows)
        writer.Add(row);
    writer.Finish();
    return text;
}

// What is written as fields comes back. `text` has its own separator.
void WriteAndReadFields(std::string_view text) {
    std::vector<std::string> fields = {""};
    std::string line;
    for (const char letter : text)
        if (letter == '\0')
            line += ',' + CsvField(fields.back()), fields.emplace_back();
        else
            fields.back() += letter;
    line += ',' + CsvField(fields.back()) + '\n';
    fields.insert(fields.begin(), "");
    CsvRecords records(line);
    std::vector<std::string> read;
    Require(records.Next(read) && read == fields && !records.Next(read));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    WriteAndReadFields({reinterpret_cast<const char*>(data), size});
    // Most inputs are to get past the first line.
    for (const std::string_view header : {std::string_view(), kStatsHeader, kStatsDistancesHeader}) {
        std::string text(reinterpret_cast<const char*>(data), size);
        if (!header.empty())
            text = std::string(header) + '\n' + text;
        std::optional<Stats> stats = Parse(text);
        if (!stats)
            continue;
        const std::string written = Write(*stats);
        const std::optional<Stats> again = Parse(written);
        Require(again && Write(*again) == written && again->rows.size() == stats->rows.size());
        if (stats->settings.isPart) {
            (void)Join({Of(*again, "1/2"), Of(*again, "2/2")});
            stats = Join({*again});
        }
        if (!stats || stats->rows.empty())
            continue;
        const auto scenes = DecideAgain(*stats, {stats->settings.parameters});
        Require(scenes.front().begin == 0 && std::ranges::is_sorted(scenes, {}, &SceneRows::begin));
        Require(scenes.back().end == std::ssize(stats->rows));
    }
    return 0;
}
