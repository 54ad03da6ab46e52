#include "support/Timecode.h"
#include "tests/Testing.h"

using scenedetect::FramesToTimecodeText;

TEST(Timecode, FullAndShortForms) {
    struct Case {
        std::int32_t frames;
        std::int32_t framesPerSecond;
        const wchar_t* full;
        const wchar_t* shortened;
    };
    const Case cases[] = {
        {0, 25, L"00:00:00:00", L"0"},
        {30, 25, L"00:00:01:05", L"1:05"},
        {1500, 25, L"00:01:00:00", L"1:00:00"},
        {90000, 25, L"01:00:00:00", L"1:00:00:00"},
        {-1, 25, L"00:00:00:-1", L"-1"},
        // -91 s and -3 frames: -1 minute, -31 seconds.
        {-2278, 25, L"00:-1:-31:-3", L"-1:-31:-3"},
        // 100 hours of 30 frames a second.
        {10800000, 30, L"100:00:00:00", L"100:00:00:00"},
        // 2147483647 s = 596523 h, 14 min, 7 s.
        {2147483647, 1, L"596523:14:07:00", L"596523:14:07:00"},
    };
    for (const Case& c : cases) {
        std::wstring text = L"replaced";
        FramesToTimecodeText(text, c.frames, true, c.framesPerSecond);
        EXPECT_EQ(text, c.full);
        FramesToTimecodeText(text, c.frames, false, c.framesPerSecond);
        EXPECT_EQ(text, c.shortened);
    }
}
