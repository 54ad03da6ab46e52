// Which samples of a grid an area of the picture has.
#include "engine/ComparedSamples.h"
#include "engine/DvDcImage.h"
#include "tests/Testing.h"

namespace {

struct Cells {
    int left, top, right, bottom; // the last two are outside
};

// Samples of the cells are 200, all others 0, so that the mean tells whether these are compared and no other.
void ExpectCells(const std::array<int, 4>& area, const GridPlaces& places, const Cells& cells) {
    const DetectionParameters parameters{
        .areaLeft = area[0], .areaTop = area[1], .areaWidth = area[2], .areaHeight = area[3]};
    std::vector<std::uint8_t> slot(static_cast<std::size_t>(places.samples));
    const std::vector<std::uint8_t> black = slot;
    std::size_t count = 0;
    for (int i = 0; i < places.samples; ++i) {
        const int column = i % places.columns;
        const int row = i / places.columns;
        if (column < cells.left || column >= cells.right || row < cells.top || row >= cells.bottom)
            continue;
        slot[static_cast<std::size_t>(i)] = 200;
        ++count;
    }
    const ComparedSamples compared(parameters, places);
    EXPECT_EQ(compared.Count(), count);
    EXPECT_EQ(compared.MeanLevel(slot.data()), 200);
    EXPECT_EQ(compared.MeanDifference(black.data(), slot.data(), 255), 200);
    EXPECT_EQ(compared.MeanDifference(slot.data(), black.data(), 60), 60);
    EXPECT_EQ(compared.Detail(slot.data()), 0);
}

TEST(ComparedSamples, DetailIsOfNeighboursInARow) {
    const std::vector<std::uint8_t> slot = {0, 10, 10, 200, 200, 231, 90, 90};
    EXPECT_EQ(ComparedSamples(slot.size(), 3).Detail(slot.data()), 41 * 64 / 5) << "the last row lacks one";
    EXPECT_EQ(ComparedSamples(slot.size(), 1).Detail(slot.data()), 0) << "no neighbours";
}

TEST(ComparedSamples, AreThoseWhoseCentresLieInTheArea) {
    constexpr GridPlaces kSmall{80, 44, 8, 10, 50}; // centres at 4, 12 ... 76 pixels and 4 ... 36
    const GridPlaces pal = DvDcImage::Places(true);
    const GridPlaces ntsc = DvDcImage::Places(false);
    const struct {
        const char* name;
        std::array<int, 4> area;
        GridPlaces places;
        Cells cells;
    } cases[] = {
        {"all", {0, 0, 1000, 1000}, kSmall, {0, 0, 10, 5}},
        {"a centre on the left edge counts, on the right not", {50, 0, 100, 1000}, kSmall, {0, 0, 1, 5}},
        {"one pixel in from it", {51, 0, 100, 1000}, kSmall, {1, 0, 2, 5}},
        {"rows that fill no block have no samples", {0, 500, 1000, 500}, kSmall, {0, 3, 10, 5}},
        {"between centres the nearest", {301, 400, 1, 1}, kSmall, {3, 2, 4, 3}},
        {"below all centres", {999, 999, 1, 1}, kSmall, {9, 4, 10, 5}},
        {"beyond the picture", {900, 0, 1000, 1000}, kSmall, {9, 0, 10, 5}},
        {"525 lines: without a ticker", {0, 0, 1000, 850}, ntsc, {0, 0, 22, 13}},
        {"525 lines: a corner, from a centre on", {900, 900, 100, 100}, ntsc, {20, 13, 22, 15}},
        {"625 lines: a row has 23", {0, 0, 500, 1000}, pal, {0, 0, 11, 18}},
        {"625 lines: the last column is half as wide", {980, 0, 20, 1000}, pal, {22, 0, 23, 18}},
        {"625 lines: the last row has five", {0, 950, 1000, 50}, pal, {0, 17, 5, 18}},
        {"625 lines: the nearest above what that row lacks", {500, 970, 20, 30}, pal, {11, 16, 12, 17}},
    };
    for (const auto& one : cases) {
        SCOPED_TRACE(one.name);
        ExpectCells(one.area, one.places, one.cells);
    }
}

} // namespace
