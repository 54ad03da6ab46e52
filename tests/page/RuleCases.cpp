// Writes random films' figures as the report has them, and what --from-stats decides from them: a line of
// JSON each.
#include "products/report/Base64.h"
#include "products/report/RunJson.h"
#include "products/stats/DecideAgain.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <numeric>
#include <random>

using namespace scenedetect;

namespace {

using Picture = std::array<int, 16>;
std::mt19937 g_random(16);

int Any(int least, int most) {
    return std::uniform_int_distribution(least, most)(g_random);
}

Picture AnyPicture() {
    Picture picture;
    std::ranges::generate(picture, [] { return Any(0, 1) != 0 ? Any(0, 255) : 128; });
    return picture;
}

Picture Mixed(const Picture& one, const Picture& other, int part, int whole) {
    Picture picture;
    for (std::size_t i = 0; i < picture.size(); ++i)
        picture[i] = (one[i] * (whole - part) + other[i] * part) / whole;
    return picture;
}

// Shots at rest and with noise, between them cuts, fades, dissolves, flashes and repeated frames.
std::vector<Picture> AnyFilm() {
    std::vector<Picture> film;
    Picture shot = AnyPicture();
    const Picture black{};
    const auto change = [&](const Picture& to, int frames) {
        for (int i = 1; i <= frames; ++i)
            film.push_back(Mixed(shot, to, i, frames));
        shot = to;
    };
    for (const auto length = static_cast<std::size_t>(Any(1, Any(0, 9) == 0 ? 3000 : 400));
         film.size() < length;) {
        for (int frames = Any(0, 60), noise = Any(0, 2) * 8; frames > 0; --frames) {
            film.push_back(shot);
            for (int& sample : film.back())
                sample = std::clamp(sample + Any(-noise, noise), 0, 255);
        }
        const int what = Any(0, 4);
        if (what == 1)
            change(AnyPicture(), Any(12, 40));
        else if (what == 2)
            change(black, Any(1, 20)), film.insert(film.end(), static_cast<std::size_t>(Any(0, 9)), black);
        else if (what == 3)
            film.insert(film.end(), static_cast<std::size_t>(Any(1, 4)), Mixed(shot, AnyPicture(), 1, 2));
        if (what == 4 && !film.empty())
            film.push_back(film.back());
        else if (what != 3)
            change(AnyPicture(), what == 2 ? Any(1, 20) : 1);
    }
    return film;
}

LONG Distance(const Picture& one, const Picture& other) {
    int sum = 0;
    for (std::size_t i = 0; i < one.size(); ++i)
        sum += std::abs(one[i] - other[i]);
    return sum / static_cast<int>(one.size());
}

Stats StatsOf(const std::vector<Picture>& film) {
    Stats stats;
    stats.settings.hasDistances = Any(0, 3) != 0;
    FilePlace place{Any(0, 9), Any(0, 9)};
    const int unevenness = Any(0, 2); // none, now and then, at every frame
    for (std::size_t row = 0; row < film.size(); ++row) {
        StatsRow each{place, {static_cast<ULONG>(row), 0, 0, 0, 0}};
        const auto count = static_cast<double>(film[row].size());
        const double mean = std::accumulate(film[row].begin(), film[row].end(), 0.0) / count;
        double squares = 0;
        for (const int sample : film[row])
            squares += (sample - mean) * (sample - mean);
        each.figures.nLevel = static_cast<LONG>(mean);
        each.figures.nDifference = Distance(film[row], row == 0 ? Picture{} : film[row - 1]);
        if (stats.settings.hasDistances) {
            each.distances.nVariance = static_cast<LONG>(squares / count);
            Picture shifted = film[row];
            std::rotate(shifted.begin(), shifted.begin() + 1, shifted.end());
            each.distances.nDetail = kDetailScale * Distance(film[row], shifted);
            for (std::size_t i = 0; i < kDistanceSpans.size(); ++i)
                if (const auto span = static_cast<std::size_t>(kDistanceSpans[i]); span <= row)
                    each.distances.nDistance[i] = Distance(film[row], film[row - span]);
        }
        stats.rows.push_back(each);
        place = PlaceAfter(place, stats.settings.scale);
        const bool isUneven = unevenness == 2 || (unevenness == 1 && Any(0, 20) == 0);
        place.time += isUneven ? Any(0, 3) : 0;
        place.frame += isUneven && unevenness == 1 ? Any(0, 2) : 0;
    }
    return stats;
}

RuleSettings AnySettings(bool hasDistances) {
    RuleSettings settings;
    DetectionParameters& parameters = settings.parameters;
    parameters.cutThreshold = Any(0, 1) != 0 ? Any(0, 40) : Any(0, 255);
    parameters.darkLevel = Any(0, 2) != 0 ? Any(-1, 60) : Any(-1, 255);
    parameters.minVotes = Any(1, 4);
    parameters.longestScene = Any(0, 2) == 0 ? Any(1, 90) : 0;
    if (hasDistances)
        settings.transitions = {Any(0, 1) != 0, static_cast<FadePlace>(Any(0, 3)), Any(0, 1) != 0};
    if (Any(0, 1) != 0)
        settings.least = LeastLength{Any(1, 60), Any(0, 1) != 0};
    settings.shortScenes = static_cast<ShortRule>(Any(0, 2));
    return settings;
}

} // namespace

int main(int argc, char** argv) {
    for (int films = argc > 1 ? std::atoi(argv[1]) : 200; films > 0; --films) {
        const Stats stats = StatsOf(AnyFilm());
        ReportFigures figures;
        figures.Begin(stats.settings.scale);
        for (const StatsRow& row : stats.rows)
            figures.Add(row.place, row.figures, row.distances);
        SceneTable table;
        table.scenes.push_back(
            {stats.rows.front().place, PlaceAfter(stats.rows.back().place, stats.settings.scale), "video"});
        nlohmann::json cases = nlohmann::json::array();
        const ReportContent content{table, figures, {}, {}, {}, {}, {}};
        std::vector<std::uint8_t> bytes;
        for (const ReportFigures::Column& column : ColumnsOf(content))
            bytes.insert(bytes.end(), column.bytes.begin(), column.bytes.end());
        for (int i = 0; i < 20; ++i) {
            const RuleSettings settings = AnySettings(stats.settings.hasDistances);
            Stats judged = stats;
            judged.settings.parameters = settings.parameters;
            nlohmann::json scenes = nlohmann::json::array();
            for (const SceneRows& scene : DecideAgain(judged, settings))
                scenes.push_back({scene.begin, scene.end, static_cast<int>(scene.kind)});
            cases.push_back(
                {{"settings", nlohmann::json::parse(RunJson({table, figures, settings, {}, {}, {}, {}}))},
                 {"scenes", scenes}});
        }
        std::printf("{\"run\":%s,\"figures\":\"%s\",\"cases\":%s}\n", RunJson(content).c_str(),
                    Base64(bytes).c_str(), cases.dump().c_str());
    }
}
