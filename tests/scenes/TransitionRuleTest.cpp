// What flashes, fades and dissolves make of a film's scenes: small films of known pictures, frame by frame.
#include "scenes/transitions/TransitionRule.h"
#include "engine/decision/Decision.h"
#include "tests/Testing.h"

#include <numeric>

namespace {

constexpr std::size_t kWidth = 16;
constexpr std::size_t kHeight = 12;
using Grid = std::vector<std::uint8_t>;
using Film = std::vector<Grid>;

/// A picture of a scene of its own, shifted so many samples to the left.
Grid Picture(unsigned scene, std::size_t shift = 0, int brightness = 0) {
    Grid grid;
    std::mt19937 random(scene);
    std::vector<int> wide(kHeight * 256);
    for (int& sample : wide)
        sample = 60 + static_cast<int>(random() % 100);
    for (std::size_t i = 0; i < kWidth * kHeight; ++i)
        grid.push_back(static_cast<std::uint8_t>(
            std::min(wide[i / kWidth * 256 + (i % kWidth + shift) % 256] + brightness, 255)));
    return grid;
}

Grid Mixed(const Grid& one, const Grid& other, double share) {
    Grid grid;
    for (std::size_t i = 0; i < one.size(); ++i)
        grid.push_back(static_cast<std::uint8_t>(one[i] * (1 - share) + other[i] * share + 0.5));
    return grid;
}

/// Brighter from left to right, with its rows in another order: all that are made of it are alike in large.
Grid Lit(std::ptrdiff_t rows) {
    Grid grid = Picture(1);
    for (std::size_t i = 0; i < grid.size(); ++i)
        grid[i] = static_cast<std::uint8_t>(grid[i] + i % kWidth * 5);
    std::rotate(grid.begin(), grid.begin() + rows * static_cast<std::ptrdiff_t>(kWidth), grid.end());
    return grid;
}

const Grid kBlack(kWidth* kHeight, 16);
const Grid kWhite(kWidth* kHeight, 235);

Film Still(const Grid& grid, int frames) {
    return Film(static_cast<std::size_t>(frames), grid);
}
/// `frames` between the two, neither of them included.
Film Gradual(const Grid& one, const Grid& other, int frames) {
    Film film;
    for (int i = 1; i <= frames; ++i)
        film.push_back(Mixed(one, other, i / (frames + 1.0)));
    return film;
}
/// Of the contrast that a dissolve of as many frames has.
Film OutOfFocus(const Grid& grid, int frames) {
    Film film;
    for (int i = 1; i <= frames; ++i) {
        const double share = i / (frames + 1.0);
        film.push_back(Mixed(grid, Grid(grid.size(), 110), 1 - std::hypot(1 - share, share)));
    }
    return film;
}
Film Pan(unsigned scene, int frames) {
    Film film;
    for (int i = 0; i < frames; ++i)
        film.push_back(Picture(scene, static_cast<std::size_t>(i)));
    return film;
}
Film Join(const std::vector<Film>& parts) {
    Film film;
    for (const Film& part : parts)
        film.insert(film.end(), part.begin(), part.end());
    return film;
}

std::int32_t Mean(const Grid& grid, const std::function<int(std::size_t)>& value) {
    int sum = 0;
    for (std::size_t i = 0; i < grid.size(); ++i)
        sum += value(i);
    return sum / static_cast<std::int32_t>(grid.size());
}
std::int32_t Apart(const Grid& one, const Grid& other) {
    return Mean(one, [&](std::size_t i) { return std::abs(one[i] - other[i]); });
}

std::vector<FrameMeasures> Measure(const Film& film) {
    std::vector<FrameMeasures> frames;
    Decision decision;
    for (std::size_t k = 0; k < film.size(); ++k) {
        FrameMeasures frame;
        frame.difference = k == 0 ? 0 : Apart(film[k], film[k - 1]);
        frame.level = Mean(film[k], [&](std::size_t i) { return film[k][i]; });
        // In whole numbers, so that nothing of the level is cut off.
        const int count = static_cast<int>(kWidth * kHeight);
        const int sum = std::accumulate(film[k].begin(), film[k].end(), 0);
        frame.distances.variance =
            Mean(film[k], [&](std::size_t i) { return film[k][i] * film[k][i]; }) - sum * sum / count / count;
        frame.distances.detail = kDetailScale * Mean(film[k], [&](std::size_t i) {
                                     return i % kWidth == 0 ? 0 : std::abs(film[k][i] - film[k][i - 1]);
                                 });
        for (std::size_t i = 0; i < kDistanceSpans.size(); ++i) {
            const auto span = static_cast<std::size_t>(kDistanceSpans[i]);
            frame.distances.back[i] = k < span ? kNoDistance : Apart(film[k], film[k - span]);
        }
        frames.push_back(frame);
        if (const std::int32_t cut = decision.Judge(frame.difference, frame.level).sceneStart; cut >= 1)
            frames[static_cast<std::size_t>(cut)].isCut = true;
    }
    return frames;
}

std::vector<std::string> Scenes(const Film& film, const TransitionChoice& choice) {
    std::vector<std::string> scenes;
    TransitionRule rule(choice);
    std::int64_t frames = 0;
    const auto take = [&] {
        while (const auto scene = rule.Take()) {
            constexpr const char* kWords[] = {"", "fade ", "dissolve "};
            scenes.push_back(kWords[static_cast<int>(scene->kind)] + std::to_string(scene->frame));
            EXPECT_GT(scene->frame, frames - MeasureRing::kFrames) << "told too late";
        }
    };
    for (const FrameMeasures& frame : Measure(film)) {
        rule.Add(frame);
        ++frames;
        take();
    }
    rule.Finish();
    take();
    return scenes;
}

struct FilmCase {
    const char* name;
    Film film;
    TransitionChoice choice;
    std::vector<std::string> scenes;
};

constexpr TransitionChoice kDrop{true, FadePlace::Off, false};
constexpr TransitionChoice kMiddle{false, FadePlace::Middle, false};
constexpr TransitionChoice kDissolves{false, FadePlace::Off, true};
constexpr TransitionChoice kAll{true, FadePlace::Middle, true};

class Transitions : public TestWithParam<FilmCase> {};

TEST_P(Transitions, OfAFilm) {
    const auto& [name, film, choice, scenes] = GetParam();
    EXPECT_EQ(Scenes(film, choice), scenes);
}

const Grid kOne = Picture(1);
const Grid kTwo = Picture(2);
const Film kStrobe = Join({Still(kWhite, 2), Still(kOne, 3), Still(kWhite, 2), Still(kOne, 40)});

// Frames 45 to 54 are black.
const Film kFade = Join({Still(kOne, 40), Gradual(kOne, kBlack, 5), Still(kBlack, 10),
                         Gradual(kBlack, kTwo, 5), Still(kTwo, 80)});

const FilmCase kFilms[] = {
    {"CutsStay",
     Join({Still(kOne, 40), Still(kTwo, 40), Still(Picture(3), 20), Pan(3, 30), Still(Picture(3, 29), 60)}),
     kAll,
     {"40", "80"}},
    {"FlashOf1", Join({Still(kOne, 40), Still(kWhite, 1), Still(kOne, 40)}), kDrop, {}},
    {"FlashOf4", Join({Still(kOne, 40), Still(kWhite, 4), Still(kOne, 40)}), kDrop, {}},
    {"FlashKept", Join({Still(kOne, 40), Still(kWhite, 4), Still(kOne, 40)}), kMiddle, {"40", "44"}},
    {"SceneOf5", Join({Still(kOne, 40), Still(kWhite, 5), Still(kOne, 40)}), kDrop, {"40", "45"}},
    {"Strobe", Join({Still(kOne, 40), kStrobe}), kDrop, {}},
    {"FlashBeforeACut", Join({Still(kOne, 40), Still(Picture(1, 0, 60), 3), Still(kTwo, 40)}), kDrop, {"43"}},
    {"FlashAfterACut", Join({Still(kOne, 40), Still(Picture(2, 0, 60), 3), Still(kTwo, 40)}), kDrop, {"40"}},
    {"ShortSceneThatIsNoFlash",
     Join({Still(kOne, 40), Still(kTwo, 3), Still(Picture(3), 40)}),
     kDrop,
     {"40", "43"}},
    {"FadeStart", kFade, {false, FadePlace::Start, false}, {"fade 45"}},
    {"FadeMiddle", kFade, kAll, {"fade 49"}},
    {"FadeEnd",
     Join({Still(kOne, 40), Gradual(kOne, kWhite, 50), Still(kWhite, 10), Gradual(kWhite, kTwo, 50),
           Still(kTwo, 80)}),
     {false, FadePlace::End, true},
     {"fade 100"}},
    {"FadeOutThenACut",
     Join({Still(kOne, 40), Gradual(kOne, kBlack, 20), Still(kBlack, 10), Still(kTwo, 80)}),
     kMiddle,
     {"fade 64"}},
    {"ACutToBlackIsNoFade",
     Join({Still(kOne, 40), Still(kBlack, 10), Still(kTwo, 80)}),
     kMiddle,
     {"40", "50"}},
    {"FadesAtTheEndsOfTheFilm",
     Join({Gradual(kBlack, kOne, 20), Still(kOne, 40), Gradual(kOne, kBlack, 20), Still(kBlack, 90)}),
     {true, FadePlace::Middle, true},
     {"80"}},
    {"ALongRestIsAScene",
     Join({Still(kOne, 40), Gradual(kOne, kBlack, 20), Still(kBlack, 400), Gradual(kBlack, kTwo, 20),
           Still(kTwo, 80)}),
     kMiddle,
     {"fade 60", "fade 460"}},
    // Mixed frames are 60 to 60 + length - 1.
    {"DissolveOf10",
     Join({Still(kOne, 60), Gradual(kOne, kTwo, 10), Still(kTwo, 80)}),
     kDissolves,
     {"dissolve 64"}},
    {"DissolveOf50",
     Join({Still(kOne, 60), Gradual(kOne, kTwo, 50), Still(kTwo, 120)}),
     kAll,
     {"dissolve 84"}},
    {"DissolveOfPicturesAlikeInLarge",
     Join({Still(Lit(0), 60), Gradual(Lit(0), Lit(5), 30), Still(Lit(5), 120)}),
     kDissolves,
     {"dissolve 74"}},
    {"FocusIsNoDissolve", Join({Still(kOne, 60), OutOfFocus(kOne, 30), Still(kOne, 120)}), kDissolves, {}},
    {"FadesAreNoDissolves",
     Join({Still(kOne, 60), Gradual(kOne, kBlack, 30), Still(kBlack, 5), Gradual(kBlack, kTwo, 30),
           Still(kTwo, 120)}),
     kDissolves,
     {"90"}},
    {"LightIsNoDissolve",
     Join({Still(kOne, 60), Gradual(kOne, Picture(1, 0, 60), 30), Still(Picture(1, 0, 60), 120)}),
     kAll,
     {}},
};

INSTANTIATE_TEST_SUITE_P(, Transitions, ValuesIn(kFilms), kByName);

} // namespace
