// Where a tape tells that something begins, frame by frame.
#include "reading/dv/TapeJudge.h"
#include "tests/Testing.h"

namespace {

using namespace std::chrono_literals;

// From the 31st of December 2003, 23:59:58 and 10:00:00:00 on, at 25 frames a second.
class RunningTape {
  public:
    DvPacks packs{
        {}, std::chrono::December / 31 / 2003, {}, DvAspect::Full4By3, DvAudioFormat{48000, 16, 2, false}};
    DvSystem system = DvSystem::Lines625;
    std::chrono::seconds clock = 86398s;
    int timecode = 36000 * 25;

    RunningTape& Run(int frames) {
        for (int i = 0; i < frames; ++i, ++m_frame, ++timecode) {
            const auto now = clock + std::chrono::seconds(m_frame / 25);
            packs.time = now % 86400s;
            const int rate = DvTimecodeRate(system);
            const int second = timecode / rate;
            packs.timecode = DvTimecode{second / 3600, second / 60 % 60, second % 60, timecode % rate};
            if (now >= 86400s && !m_isNextDay) {
                packs.date = std::chrono::sys_days(*packs.date) + std::chrono::days(1);
                m_isNextDay = true;
            }
            Take(m_judge.Note(m_frame, {system, packs}));
        }
        return *this;
    }
    /// "frame words" of all that begins, with '*' where that is a recording.
    std::vector<std::string> Beginnings() {
        Take(m_judge.Finish());
        return m_beginnings;
    }

  private:
    void Take(const std::optional<TapeVerdict>& verdict) {
        if (!verdict)
            return;
        std::string words;
        for (std::size_t i = 0; i < kTapeCuts; ++i)
            if (verdict->begins[i])
                words += ' ' + TapeCutWord(static_cast<TapeCut>(i));
        if (!words.empty() || (verdict->beginsRecording && m_judged != 0))
            m_beginnings.push_back(std::to_string(m_judged) + words + (verdict->beginsRecording ? "*" : ""));
        ++m_judged;
    }

    TapeJudge m_judge;
    int m_frame = 0;
    int m_judged = 0;
    bool m_isNextDay = false;
    std::vector<std::string> m_beginnings;
};

struct Case {
    const char* name;
    std::function<void(RunningTape&)> film;
    std::vector<std::string> beginnings;
};

const Case kCases[] = {
    {"Midnight", [](RunningTape&) {}, {}},
    {"ANewDayAtTheSameHour",
     [](RunningTape& tape) { tape.packs.date = std::chrono::January / 2 / 2004; },
     {"100 recording*"}},
    {"ALaterHour", [](RunningTape& tape) { tape.clock += 2s; }, {"100 recording*"}},
    {"TimecodeWhileTheClockGoesOn", [](RunningTape& tape) { tape.timecode += 90000; }, {"100 timecode"}},
    {"RecordFlagOfSeveralFrames",
     [](RunningTape& tape) {
         tape.packs.isRecordingStart = true;
         tape.Run(10).packs.isRecordingStart = false;
     },
     {"100 record-flag*"}},
    {"AfterTheStopMark",
     [](RunningTape& tape) {
         tape.packs.isRecordingEnd = true;
         tape.Run(2).packs.isRecordingEnd = false;
     },
     {"102 record-stop"}},
    {"Aspect", [](RunningTape& tape) { tape.packs.aspect = DvAspect::Full16By9; }, {"100 aspect"}},
    {"AspectUntold", [](RunningTape& tape) { tape.packs.aspect.reset(); }, {}},
    {"AudioOfTwelveBits",
     [](RunningTape& tape) {
         tape.packs.audio = {32000, 12, 4, false};
     },
     {"100 audio"}},
    {"AudioLockedOnly", [](RunningTape& tape) { tape.packs.audio->isLocked = true; }, {}},
    {"Lines", [](RunningTape& tape) { tape.system = DvSystem::Lines525; }, {"100 lines*"}},
    {"AllAtOnce",
     [](RunningTape& tape) {
         tape.packs.audio->samplingRate = 32000;
         tape.packs.aspect = DvAspect::Full16By9;
         tape.timecode = 0;
         tape.clock += 60s;
     },
     {"100 recording timecode aspect audio*"}},
    {"OneStrayFrame",
     [](RunningTape& tape) {
         const RunningTape before = tape;
         tape.packs.audio->samplingRate = 32000;
         tape.packs.aspect = DvAspect::Full16By9;
         tape.timecode += 7;
         tape.clock += 60s;
         tape.Run(1);
         tape.packs = before.packs;
         tape.timecode -= 7;
         tape.clock -= 60s;
     },
     {}},
    {"ATimecodeThatStands",
     [](RunningTape& tape) {
         for (int i = 0; i < 10; ++i, --tape.timecode)
             tape.Run(1);
     },
     {"101 timecode"}},
};

class TapeCuts : public TestWithParam<Case> {};

TEST_P(TapeCuts, AreFound) {
    RunningTape tape;
    tape.Run(100);
    GetParam().film(tape);
    EXPECT_EQ(tape.Run(50).Beginnings(), GetParam().beginnings);
}

INSTANTIATE_TEST_SUITE_P(Cases, TapeCuts, ValuesIn(kCases), kByName);

} // namespace
