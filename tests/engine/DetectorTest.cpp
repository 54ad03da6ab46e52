#include "engine/Detector.h"
#include "tests/Testing.h"
#include "tests/engine/BitmapMaking.h"
#include "tests/engine/LogRecorder.h"

namespace {

std::span<std::uint8_t> Slot(Detector& detector, std::int32_t offset) {
    return {detector.GetFrame(offset), static_cast<std::size_t>(detector.GetSampleCount())};
}

void Feed(Detector& detector, std::uint8_t level) {
    detector.NextFrame();
    std::ranges::fill(Slot(detector, 0), level);
    detector.Process();
}

TEST(Detector, RingOfFiveSlots) {
    Detector detector;
    EXPECT_EQ(detector.GetFrame(0), nullptr);
    std::uint8_t* const first = detector.NextFrame() - 300;
    EXPECT_THAT(Slot(detector, -1), Each(0));
    EXPECT_EQ(detector.GetFrame(-1), first);
    for (const int slot : {2, 3, 4, 0})
        EXPECT_EQ(detector.NextFrame(), first + 300 * slot);
    EXPECT_EQ(detector.GetFrame(-1), first + 300 * 4);
    EXPECT_EQ(detector.GetFrame(-5), first);
    EXPECT_EQ(detector.GetFrame(INT32_MAX), first + 300 * 2); // 2147483647 is 2 more than a multiple of 5
}

TEST(Detector, MetricsTruncateAndClamp) {
    struct Case {
        std::int32_t clamp;
        std::int32_t difference;
    };
    // Levels 10, 100, 255 after black.
    for (const Case& c : {Case{255, 365 / 3}, {1000, 365 / 3}, {100, 210 / 3}, {10, 10}, {0, 0}, {-7, -7}}) {
        Detector detector;
        detector.SetGridWidth(3);
        detector.SetGridHeight(1);
        detector.SetParameters(13, 25, c.clamp, 3);
        detector.NextFrame();
        std::ranges::copy(std::initializer_list<std::uint8_t>{10, 100, 255}, Slot(detector, 0).begin());
        EXPECT_EQ(detector.ComputeDifference(), c.difference) << c.clamp;
        EXPECT_EQ(detector.ComputeMeanLevel(), 365 / 3);
    }
}

TEST(Detector, OnlyAnotherGridSizeResets) {
    Detector detector;
    Feed(detector, 1);
    Feed(detector, 2);
    detector.SetGridWidth(20);
    detector.SetGridHeight(15);
    EXPECT_EQ(detector.GetFrameCount(), 2);
    EXPECT_EQ(detector.ComputeDifference(), 1);
    detector.SetGridWidth(22);
    EXPECT_EQ(detector.GetFrameCount(), 0);
    EXPECT_EQ(detector.GetSampleCount(), 330);
    Feed(detector, 3);
    EXPECT_EQ(detector.ComputeDifference(), 3);                        // to black: the old grids are gone
    EXPECT_EQ(detector.GetFrame(-2) - detector.GetFrame(-1), 4 * 330); // slots 4 and 0: slot 1 is first again
}

TEST(Detector, GridsThatCannotBeAreEmpty) {
    const Bitmap bitmap(MakeHeader(8, 8, 24), std::vector<std::uint8_t>(192, 255));
    for (const auto& [width, height] :
         {std::pair{0, 15}, {20, 0}, {-20, -15}, {INT32_MAX, INT32_MAX}, {65536, 32768}}) {
        Detector detector;
        detector.SetGridWidth(width);
        detector.SetGridHeight(height);
        EXPECT_EQ(detector.GetSampleCount(), 0);
        EXPECT_EQ(detector.Process(), -1); // without a slot
        detector.ExtractLuminance(bitmap.dib, detector.NextFrame());
        EXPECT_EQ(detector.Process(), -1);
        EXPECT_EQ(detector.GetFrameCount(), 2);
    }
}

TEST(Detector, ExtremeSettingsStayWithinTheirTypes) {
    for (const std::int32_t extreme : {INT32_MAX, INT32_MIN}) {
        const LogRecorder log(31);
        Detector detector;
        detector.SetParameters(extreme, extreme, extreme, 3);
        detector.SetFrameRate(extreme);
        detector.SetStartFrame(extreme);
        for (int i = 0; i < 8; ++i)
            Feed(detector, static_cast<std::uint8_t>(i * 31));
        EXPECT_EQ(detector.GetFrameCount(), extreme == INT32_MAX ? INT32_MAX : INT32_MIN + 8);
    }
}

TEST(Detector, ExtractsIntoItsGridAndClears) {
    const LogRecorder log;
    Detector detector;
    detector.SetGridWidth(2);
    detector.SetGridHeight(1);
    detector.SetBlockSize(4);
    std::vector<std::uint8_t> pixels;
    for (int pixel = 0; pixel < 8 * 4; ++pixel)
        pixels.insert(pixels.end(), 3, static_cast<std::uint8_t>(pixel % 8 < 4 ? 11 : 22));
    std::uint8_t* slot = detector.NextFrame();
    detector.ExtractLuminance(Bitmap(MakeHeader(8, 4, 24), pixels).dib, slot);
    EXPECT_THAT(Slot(detector, 0), ElementsAre(11, 22));
    EXPECT_TRUE(log.lines.empty());
    detector.ExtractLuminance(Bitmap(MakeHeader(8, 4, 16, MAKEFOURCC('Y', 'V', 'Y', 'U')), pixels).dib, slot);
    EXPECT_THAT(Slot(detector, 0), ElementsAre(11, 22));
    EXPECT_THAT(log.lines, ElementsAre(L"702/0 Detector::Invalid dib format\n"));
    EXPECT_FALSE(detector.ClearFrame(slot));
    EXPECT_THAT(Slot(detector, 0), Each(0));
}

} // namespace
