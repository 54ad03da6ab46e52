// The cues that a tape's recording clock gives.
#include "running/listeners/RecordingTimes.h"
#include "tests/DvFrame.h"
#include "tests/Testing.h"

namespace {

constexpr int kTenOClock = 36000;
constexpr int kUntimed = -1; // a frame without a recording time
constexpr int kLost = -2;    // no frame

// "start-end clock" of each cue of 60 PAL frames, whose clock `clockAt` tells.
std::string CuesOf(const std::function<int(int frame)>& clockAt) {
    RecordingTimes times({{1, 25}, {25, 1}});
    for (int number = 0; number < 60; ++number) {
        DvFrame frame;
        frame.SetDate({0x62, 0xFF, 0x17, 0x07, 0x04});
        if (clockAt(number) >= 0)
            frame.SetTime(TimePack(clockAt(number)));
        Picture picture;
        picture.Hold(frame.Bytes(), {nullptr, [](void*) {}});
        picture.place = {number, number};
        if (clockAt(number) != kLost)
            times.Note(picture);
    }
    std::string cues;
    for (const RecordedSpan& span : times.Finish())
        cues += std::to_string(span.start.time) + '-' + std::to_string(span.end.time) + span.text.substr(10) +
                "; ";
    return cues;
}

TEST(RecordingTimesOfATape, FollowTheClock) {
    const auto running = [](int frame) { return kTenOClock + frame / 25; };
    const auto but = [&](int from, int to, int clock) {
        return CuesOf([=](int frame) { return frame >= from && frame < to ? clock : running(frame); });
    };
    EXPECT_EQ(CuesOf(running), "0-25 10:00:00; 25-50 10:00:01; 50-60 10:00:02; ");
    EXPECT_EQ(but(30, 31, 43200), CuesOf(running)); // a stray one
    EXPECT_EQ(but(10, 20, kLost), "0-10 10:00:00; 20-25 10:00:00; 25-50 10:00:01; 50-60 10:00:02; ");
    EXPECT_EQ(but(30, 31, kUntimed), "0-25 10:00:00; 25-30 10:00:01; 31-50 10:00:01; 50-60 10:00:02; ");
    EXPECT_EQ(but(40, 60, 43200), "0-25 10:00:00; 25-40 10:00:01; 40-60 12:00:00; ");
}

} // namespace
