#include "support/TimecodeFrames.h"
#include "tests/Testing.h"

namespace {

TEST(TimecodeFrames, TimesOfDayBecomeFrameNumbers) {
    EXPECT_EQ(TimeToFrames(1, 2, 3, 4, 25), 93079);
    EXPECT_EQ(TimeToFrames(23, 59, 59, 29, 30), 2591999);
}

TEST(TimecodeFrames, DropFrameCorrection) {
    const struct {
        std::int32_t number;
        std::int32_t corrected;
    } cases[] = {{0, 0}, {1799, 1799}, {1800, 1798}, {17999, 17981}, {18000, 17982}, {108000, 107892}};
    for (const auto& one : cases) {
        EXPECT_EQ(CorrectDropFrame(one.number, 30), one.corrected);
        EXPECT_EQ(CorrectDropFrame(one.number, 25), one.number);
    }
}

TEST(TimecodeFrames, ABreakIsMoreThanASecondEitherWay) {
    const std::int32_t ten = TimeToFrames(10, 0, 0, 0, 25);
    EXPECT_FALSE(IsRecordingBreak(ten, ten + 25, 25));
    EXPECT_TRUE(IsRecordingBreak(ten, ten + 26, 25));
    EXPECT_FALSE(IsRecordingBreak(ten, ten - 25, 25));
    EXPECT_TRUE(IsRecordingBreak(ten, ten - 26, 25));
    EXPECT_FALSE(IsRecordingBreak(ten, ten + 26, 30));
}

} // namespace
