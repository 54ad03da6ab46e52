#include "reading/timing/TimePoint.h"
#include "reading/base/HostError.h"
#include "tests/Testing.h"
#include "tests/reading/timing/Rates.h"

namespace {

// The first of a constant rate's frames that is at the point.
std::int64_t FrameAt(const char* text, Ratio rate, std::int64_t from = 0) {
    const std::int32_t finer = std::max(1, 1'000'000 / rate.num); // units in a numerator's part of a second
    const TimeScale scale{{1, rate.num * finer}, rate};
    const auto place = [&](std::int64_t frame) { return FilePlace{frame, frame * rate.den * finer, -1}; };
    const TimePosition position = Resolve(ParseTimePoint(text), scale, place(from));
    std::int64_t frame = 0;
    while (!position.IsReachedBy(place(frame)))
        ++frame;
    return frame;
}

std::vector<std::int64_t> FramesAt(Ratio rate, const std::vector<const char*>& texts) {
    std::vector<std::int64_t> frames;
    for (const char* text : texts)
        frames.push_back(FrameAt(text, rate));
    return frames;
}

TEST(TimePoints, FramesOfAConstantRate) {
    // 2.5 s is frame 62.5, and 33 and 67 ms are printed for 33.37 and 66.73.
    EXPECT_THAT(FramesAt(kPal, {"75", "2.5s", "2.52s", "0:00:03", "01:00:00:24"}),
                ElementsAre(75, 62, 63, 75, 90'024));
    EXPECT_THAT(FramesAt(kNtsc, {"00:00:00.033", "00:00:00.067", "00:00:59;29", "00:01:00;02", "00:10:00;00",
                                 "00:10:00:00"}),
                ElementsAre(1, 2, 1799, 1800, 17'982, 18'000));
    EXPECT_THAT(FramesAt(kDoubleNtsc, {"00:01:00;04", "00:00:01:59"}), ElementsAre(3600, 119));
    EXPECT_THAT(FramesAt({1000, 33}, {"3.3s", "00:00:01:00"}), ElementsAre(100, 30));
    for (const char* length : {"75", "3s", "00:00:03:00"})
        EXPECT_EQ(FrameAt(length, kPal, 100), 175) << length;
}

TEST(TimePoints, PlacesOfAVariableRate) {
    // Frame 3 at 90 ms; half a nominal frame is 20 ms.
    for (const char* reached : {"3", "0.110s", "00:00:00:02"})
        EXPECT_TRUE(Resolve(ParseTimePoint(reached), {{1, 1000}, kPal}).IsReachedBy({3, 90, -1})) << reached;
    for (const char* later : {"4", "0.111s", "00:00:00:03"})
        EXPECT_FALSE(Resolve(ParseTimePoint(later), {{1, 1000}, kPal}).IsReachedBy({3, 90, -1})) << later;
}

TEST(TimePoints, Syntax) {
    for (const char* wrong :
         {"", " 75", "-1", "1.5", "s", ".5s", "2.s", "2,5s", "03:00", "00:60:00.000", "00:00:60:00",
          "00:00:00.", "00:00:00:1", "00;00;00;01", "1234567890123", "0.0000000001s", "75\n"})
        EXPECT_THAT(TimePointFault(wrong), HasSubstr("2.5s")) << wrong;
    for (const char* right :
         {"999999999999", "999999999.999999999s", "9999:59:59.999999999", "9999:59:59;999"})
        EXPECT_EQ(TimePointFault(right), "");
}

TEST(TimePoints, TimecodeThatTheRateHasNot) {
    const auto refuses = [](Ratio rate, const char* text, const char* reason) {
        EXPECT_THAT([&] { (void)FrameAt(text, rate); }, ThrowsMessage<HostError>(HasSubstr(reason))) << text;
    };
    refuses(kPal, "00:00:01:25", "00:00:01:25: at 25 frames per second the last frame of a second is 24");
    refuses(kPal, "00:00:01;00", "drop-frame timecode (;) does not go with 25 frames per second");
    refuses(kNtsc, "00:01:00;01", "no such number; this minute begins with ;02");
    refuses(kDoubleNtsc, "00:01:00;03", "no such number; this minute begins with ;04");
}

} // namespace
