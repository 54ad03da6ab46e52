// The cues that a tape's recording clock gives.
#include "running/listeners/RecordingTimes.h"
#include "tests/DvFrame.h"
#include "tests/Testing.h"

namespace {

constexpr int kTenOClock = 36000;

// "frame-end clock" of each cue; of PAL frames, whose clock `clockAt` tells: nothing where there is none.
std::string CuesOf(const std::vector<int>& frames,
                   const std::function<std::optional<int>(int frame)>& clockAt) {
    RecordingTimes times({{1, 25}, {25, 1}});
    for (const int number : frames) {
        DvFrame frame;
        frame.SetDate({0x62, 0xFF, 0x17, 0x07, 0x04});
        if (const auto clock = clockAt(number))
            frame.SetTime(TimePack(*clock));
        Picture picture;
        picture.Hold(frame.Bytes(), {nullptr, [](void*) {}});
        picture.place = {number, number};
        times.Note(picture);
    }
    std::string cues;
    for (const RecordedSpan& span : times.Finish())
        cues += std::to_string(span.start.time) + '-' + std::to_string(span.end.time) + ' ' +
                span.text.substr(11) + "; ";
    return cues;
}

TEST(RecordingTimesOfATape, FollowTheClock) {
    std::vector<int> all(60);
    std::iota(all.begin(), all.end(), 0);
    std::vector<int> lacking = all;
    lacking.erase(lacking.begin() + 10, lacking.begin() + 20);
    const auto running = [](int frame) { return kTenOClock + frame / 25; };
    const struct {
        const char* name;
        std::vector<int> frames;
        std::function<std::optional<int>(int frame)> clock;
        std::string cues;
    } cases[] = {{"running", all, running, "0-25 10:00:00; 25-50 10:00:01; 50-60 10:00:02; "},
                 {"missing frames", lacking, running,
                  "0-10 10:00:00; 20-25 10:00:00; 25-50 10:00:01; 50-60 10:00:02; "},
                 {"without a time", all,
                  [&](int frame) { return frame == 30 ? std::nullopt : std::optional(running(frame)); },
                  "0-25 10:00:00; 25-30 10:00:01; 31-50 10:00:01; 50-60 10:00:02; "},
                 {"one stray", all, [&](int frame) { return frame == 30 ? 43200 : running(frame); },
                  "0-25 10:00:00; 25-50 10:00:01; 50-60 10:00:02; "},
                 {"next recording", all,
                  [&](int frame) { return frame < 30 ? running(frame) : 43200 + (frame - 30) / 25; },
                  "0-25 10:00:00; 25-30 10:00:01; 30-55 12:00:00; 55-60 12:00:01; "}};
    for (const auto& each : cases)
        EXPECT_EQ(CuesOf(each.frames, each.clock), each.cues) << each.name;
}

} // namespace
