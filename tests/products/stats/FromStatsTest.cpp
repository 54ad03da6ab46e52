// Deciding again from saved figures gives what a run through the filter gives.
#include "products/stats/DecideAgain.h"
#include "products/stats/StatsReader.h"
#include "products/stats/StatsWriter.h"
#include "reading/base/HostError.h"
#include "scenes/rule/RuleFit.h"
#include "tests/MessageOf.h"
#include "tests/Testing.h"
#include "tests/filter/WatchedFilter.h"

#include <set>

namespace {

// A grid of 2 x 1 samples, so that the clamp has something to cut off.
constexpr LONG kWidth = 16;
constexpr LONG kHeight = 8;
using Film = std::vector<std::pair<std::uint8_t, std::uint8_t>>;

/// Shots at rest or in motion, with repeated frames; between them cuts, fades through black, and flashes.
Film MakeFilm(std::mt19937& random) {
    const auto any = [&random](int most) {
        return static_cast<int>(random() % (static_cast<unsigned>(most) + 1));
    };
    Film film;
    int left = 90;
    int right = 90;
    const auto add = [&](double brightness) {
        const auto level = [brightness](int full) {
            return static_cast<std::uint8_t>(std::clamp(full * brightness, 0.0, 255.0));
        };
        film.emplace_back(level(left), level(right));
    };
    while (film.size() < 600) {
        for (int i = any(30), motion = any(3) * 12; i >= 0; --i, add(1)) {
            left += any(3) != 0 ? any(motion) - motion / 2 : 0;
            right += left % 2 != 0 ? any(motion) - motion / 2 : 0;
        }
        if (const int fade = any(3) == 0 ? any(12) : -1; fade >= 0)
            for (int i = -fade; i <= fade; ++i)
                add(std::abs(i) / (fade + 1.0));
        for (int cuts = any(2); cuts >= 0; --cuts, add(1))
            (any(1) != 0 ? left : right) = any(255);
    }
    return film;
}

DetectionParameters MakeParameters(std::mt19937& random) {
    const auto one = [&random](std::initializer_list<std::int32_t> values) {
        return values.begin()[random() % values.size()];
    };
    return {one({0, 3, 8, 13, 25, 60}), one({-1, 10, 25, 60, 140}), one({60, 255}), one({1, 2, 3, 4}),
            one({0, 0, 1, 2, 7, 50})};
}

struct Outcome {
    Positions positions;
    std::string table;
};

/// The filter's own scenes and figures.
Outcome Watch(const Film& film, const DetectionParameters& parameters) {
    WatchedFilter filter(KxMethodVideo, FourccType("YUY2", kWidth, kHeight, 16));
    for (std::size_t i = 0; i < kDetectionParameters.size(); ++i)
        EXPECT_EQ(filter->SetParameter(static_cast<ULONG>(i), parameters.*kDetectionParameters[i].value),
                  S_OK);
    filter->EnableFrameFigures(TRUE);
    filter->EnableDetection(TRUE);
    for (const auto& [left, right] : film) {
        std::vector<std::uint8_t> picture(kWidth * kHeight * 2, right);
        for (std::size_t row = 0; row < kHeight; ++row)
            std::fill_n(picture.begin() + static_cast<std::ptrdiff_t>(row * kWidth * 2), kWidth, left);
        filter.Send(picture);
    }
    Outcome outcome{.positions = filter.Drain(), .table = ""};
    filter->EnableDetection(FALSE);
    StatsWriter writer({.scale = {}, .parameters = parameters, .notes = {}},
                       [&outcome](std::string_view text) { outcome.table += text; });
    KxFrameFigures figures{};
    for (ULONG taken = 0; filter->GetFrameFigures(1, &figures, &taken) == S_OK;)
        writer.Add({{figures.dwPosition, figures.dwPosition, -1}, figures});
    writer.Finish();
    return outcome;
}

Outcome Again(const std::string& table, const DetectionParameters& parameters) {
    Stats stats = ParseStats(table, "film.csv");
    Outcome outcome;
    for (const SceneRows& scene : DecideAgain(stats, {parameters}))
        outcome.positions.push_back(static_cast<ULONG>(scene.begin));
    StatsWriter writer(stats.settings, [&outcome](std::string_view text) { outcome.table += text; });
    for (const StatsRow& row : stats.rows)
        writer.Add(row);
    writer.Finish();
    return outcome;
}

TEST(FromStats, EqualsARunWithTheSameParameters) {
    std::mt19937 random(2024);
    std::set<Positions> different;
    int filled = 0;
    for (int round = 0; round < 6; ++round) {
        const Film film = MakeFilm(random);
        const DetectionParameters first = MakeParameters(random);
        const Outcome measured = Watch(film, first);
        for (int i = 0; i < 25; ++i) {
            DetectionParameters parameters = MakeParameters(random);
            parameters.diffClamp = first.diffClamp;
            const Outcome run = Watch(film, parameters);
            const Outcome again = Again(measured.table, parameters);
            ASSERT_EQ(again.positions, run.positions) << round << '/' << i;
            ASSERT_EQ(again.table, run.table) << round << '/' << i << ": figures and marks, too";
            different.insert(run.positions);
            for (const StatsRow& row : ParseStats(run.table, "").rows)
                filled += (row.figures.dwFlags & KxFrameFilled) != 0;
        }
    }
    EXPECT_GT(different.size(), 75u) << "the film hardly tells parameters apart";
    EXPECT_GT(filled, 100);
}

// Cuts of 30 and 9, noise of 6, and a frame of level 60 among those of 100.
TEST(FromStats, ParametersAreFittedToAList) {
    FigureTable table;
    for (std::int64_t row = 0; row < 60; ++row) {
        table.difference.push_back(row == 10 ? 9 : row == 20 ? 30 : row == 30 ? 6 : 0);
        table.level.push_back(row == 40 ? 60 : 100);
        table.places.push_back({row, row});
    }
    table.end = {60, 60};
    const auto fit = [&table](const std::vector<std::int32_t>& wanted, const FitChoice& choice = {}) {
        const RuleFit best = FitRule(table, wanted, {}, choice);
        const DetectionParameters& parameters = best.settings.parameters;
        return std::vector<std::int64_t>{parameters.cutThreshold,
                                         parameters.darkLevel,
                                         parameters.minVotes,
                                         best.kept,
                                         best.missed,
                                         best.added};
    };
    EXPECT_THAT(fit({0, 20}), ElementsAre(13, 25, 3, 1, 0, 0)) << "as it is";
    EXPECT_THAT(fit({0, 10, 20}), ElementsAre(8, 25, 3, 2, 0, 0)) << "the nearest of 6, 7 and 8";
    EXPECT_THAT(fit({0, 20, 40}), ElementsAre(13, 60, 3, 2, 0, 0));
    EXPECT_THAT(fit({0, 20, 40}, {.darkLevel = false}), ElementsAre(13, 25, 3, 1, 1, 0));
    EXPECT_THAT(fit({}), ElementsAre(30, 25, 3, 0, 0, 0));
}

TEST(FromStats, RunsOfFewFrames) {
    for (std::size_t frames = 1; frames < 7; ++frames) {
        Film film(frames, {90, 90});
        film.back() = {200, 200};
        const Outcome run = Watch(film, {.longestScene = 1});
        EXPECT_EQ(Again(run.table, {.longestScene = 1}).positions, run.positions) << frames;
        EXPECT_EQ(Again(run.table, {.longestScene = 0}).positions, Positions{0}) << frames;
    }
}

TEST(FromStats, AnotherClampOrAreaAndAnEmptyTableAreRefused) {
    EXPECT_THROW((void)Again(Watch(Film(5), {.diffClamp = 60, .longestScene = 0}).table, {}), HostError);
    EXPECT_THAT(MessageOf([] { (void)Again(Watch(Film(5), {.longestScene = 0, .areaTop = 125}).table, {}); }),
                HasSubstr("--area 0%,12.5%,100%,100%, not 0%,0%,100%,100%"));
    EXPECT_THROW((void)Again(Watch({}, {.longestScene = 0}).table, {}), HostError);
}

} // namespace
