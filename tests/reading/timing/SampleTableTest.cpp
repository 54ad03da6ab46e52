#include "reading/timing/SampleTable.h"
#include "tests/Testing.h"

namespace {

constexpr std::int64_t kFrameBytes = 144000;

TEST(SampleTable, EvenPlacesAreOneRun) {
    SampleTable table;
    for (std::int64_t i = 0; i < 1'000'000; ++i)
        table.Append({i, 1200 * i, kFrameBytes * i});
    EXPECT_EQ(table.RunCount(), 1u);
    EXPECT_EQ(table.SampleCount(), 1'000'000);
    EXPECT_EQ(table.Find(654'321), (FilePlace{654'321, 1200 * 654'321LL, kFrameBytes * 654'321}));
    EXPECT_EQ(table.Find(1'000'000), std::nullopt);
    EXPECT_EQ(table.Find(-1), std::nullopt);
}

TEST(SampleTable, GapsAndStepsBeginRuns) {
    SampleTable table;
    const FilePlace places[] = {{0, 0, 0},    {1, 10, 100}, {2, 20, 200}, {5, 50, 300},
                                {6, 60, 400}, {7, 75, 400}, {9, 75, -1}};
    for (const FilePlace& place : places)
        table.Append(place);
    for (std::size_t i = 0; i < std::size(places); ++i)
        EXPECT_EQ(table.Find(static_cast<std::int64_t>(i)), places[i]) << i;
}

TEST(SampleTable, ForgettingKeepsIrregularFilesSmall) {
    SampleTable table;
    for (std::int64_t i = 0; i < 100'000; ++i) {
        table.Append({i, i * i, i * i * i % 1001});
        table.ForgetBefore(i - 2);
        ASSERT_LE(table.RunCount(), 4u);
        for (std::int64_t kept = std::max<std::int64_t>(0, i - 2); kept <= i; ++kept)
            ASSERT_EQ(table.Find(kept), (FilePlace{kept, kept * kept, kept * kept * kept % 1001}));
    }
    EXPECT_EQ(table.Find(0), std::nullopt);
}

TEST(SampleTable, GoesOnAfterAllWasForgotten) {
    SampleTable table;
    table.Append({0, 0, 0});
    table.ForgetBefore(1);
    table.Append({1, 10, 100});
    EXPECT_EQ(table.Find(0), std::nullopt);
    EXPECT_EQ(table.Find(1), (FilePlace{1, 10, 100}));
}

} // namespace
