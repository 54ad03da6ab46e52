#include "engine/Detector.h"
#include "tests/Testing.h"
#include "tests/engine/LogRecorder.h"

namespace {

/// A detector whose metrics are told: a grid of one sample, the previous one made up for each frame.
class ScriptedDetector : public Detector {
  public:
    ScriptedDetector() {
        SetGridWidth(1);
        SetGridHeight(1);
        SetFrameRate(25);
    }
    std::uint8_t* GetFrame(std::int32_t offset) override { return offset == 0 ? &m_current : &m_previous; }

    std::int32_t Judge(int diff, int level) {
        m_current = static_cast<std::uint8_t>(level);
        m_previous = static_cast<std::uint8_t>(level >= diff ? level - diff : level + diff);
        return Process();
    }

  private:
    std::uint8_t m_current = 0;
    std::uint8_t m_previous = 0;
};

struct Unlike {
    int frame;
    int diff;
    int level;
};

/// Frames that are all alike (difference 0) but for the ones named by number.
struct Film {
    int frames;
    int level;
    std::vector<Unlike> unlike;
};

/// The frames reported, each of them by the call two frames later.
std::vector<int> Report(ScriptedDetector& detector, const Film& film) {
    std::vector<int> reported;
    const int first = detector.GetFrameCount();
    for (int frame = first; frame < first + film.frames; ++frame) {
        const auto found = std::ranges::find(film.unlike, frame, &Unlike::frame);
        const int result = found != film.unlike.end() ? detector.Judge(found->diff, found->level)
                                                      : detector.Judge(0, film.level);
        if (result != -1) {
            EXPECT_EQ(result, frame - 2);
            reported.push_back(result);
        }
    }
    return reported;
}

// The threshold is 13, dark is up to 25, bright again above 37. Every run reports frame 0.
TEST(Decision, ReportsTheFramesOfTheRule) {
    const auto expect = [](const char* name, const Film& film, const std::vector<int>& reported) {
        ScriptedDetector detector;
        EXPECT_EQ(Report(detector, film), reported) << name;
    };
    expect("nothing happens", {12, 100, {}}, {0});
    expect("frame one is never judged", {8, 100, {{1, 99, 100}}}, {0});
    expect("frame two", {8, 100, {{2, 60, 100}}}, {0, 2});
    expect("margin reached", {10, 100, {{5, 14, 100}}}, {0, 5});
    expect("margin missed", {10, 100, {{5, 13, 100}}}, {0});
    expect("exceeds three", {10, 100, {{5, 60, 100}, {6, 50, 100}}}, {0, 5});
    expect("exceeds two", {10, 100, {{4, 50, 100}, {5, 60, 100}, {6, 50, 100}}}, {0});
    expect("second of two is suppressed", {12, 100, {{5, 60, 100}, {6, 60, 100}}}, {0, 5});
    expect("next but one is not", {12, 100, {{5, 90, 100}, {6, 1, 100}, {7, 60, 100}}}, {0, 5, 7});
    // Filled to 20, 20, 20: neither edge stands out, then nor later.
    expect("gap between moving frames is filled", {12, 100, {{5, 20, 100}, {7, 20, 100}}}, {0});
    expect("gap after small difference is not", {12, 100, {{5, 20, 100}, {7, 6, 100}}}, {0, 5});
    expect("dark frame", {10, 30, {{4, 10, 20}, {5, 10, 30}}}, {0, 4});
    expect("dark by equality", {9, 25, {}}, {0, 2});
    expect("not dark enough", {10, 40, {{4, 10, 26}, {5, 10, 40}}}, {0});
    expect("not darkest of three", {10, 30, {{4, 10, 20}, {5, 10, 19}, {6, 10, 30}}}, {0, 5});
    expect("dark before moderate change", {10, 30, {{4, 10, 20}, {5, 23, 30}}}, {0, 4});
    expect("dark before great change", {10, 30, {{4, 10, 20}, {5, 24, 30}}}, {0, 5});
    expect("second dark frame under lock",
           {16, 30, {{4, 10, 20}, {5, 10, 30}, {7, 8, 37}, {8, 7, 30}, {10, 10, 20}, {11, 10, 30}}}, {0, 4});
    expect("second dark frame after bright one",
           {16, 30, {{4, 10, 20}, {5, 10, 30}, {7, 8, 38}, {8, 8, 30}, {10, 10, 20}, {11, 10, 30}}},
           {0, 4, 10});
    // Frame 8 is bright enough to unlock, but the suppressed cut at 6 locks again, before frame 9 gets dark.
    expect(
        "suppressed cut locks",
        {12,
         100,
         {{5, 150, 100}, {6, 150, 100}, {7, 70, 100}, {8, 70, 100}, {9, 80, 20}, {10, 0, 20}, {11, 0, 20}}},
        {0, 5});
}

TEST(Decision, CutAtFrameOneAfterFrameZeroIsReported) {
    ScriptedDetector detector;
    detector.SetStartFrame(-4);
    EXPECT_THAT(Report(detector, {10, 100, {{1, 60, 100}}}), ElementsAre(0, 1));
}

TEST(Decision, AnotherStartFrameBeginsANewWarmUp) {
    ScriptedDetector detector;
    EXPECT_THAT(Report(detector, {3, 100, {}}), ElementsAre(0));
    detector.SetStartFrame(3); // where it stands already
    EXPECT_THAT(Report(detector, {4, 100, {{3, 60, 100}}}), ElementsAre(3));
    detector.SetStartFrame(100);
    EXPECT_THAT(Report(detector, {10, 100, {{101, 60, 100}, {104, 60, 100}}}), ElementsAre(104));
}

TEST(Decision, ParametersChangeTheReport) {
    const auto expect = [](const char* name, const DetectionParameters& parameters, const Film& film,
                           const std::vector<int>& reported) {
        ScriptedDetector detector;
        detector.SetParameters(parameters);
        EXPECT_EQ(Report(detector, film), reported) << name;
    };
    expect("margin reached", {50, 90, 255, 2}, {10, 100, {{4, 40, 100}, {5, 51, 100}, {6, 40, 100}}}, {0, 5});
    expect("margin missed", {50, 90, 255, 2}, {10, 100, {{4, 40, 100}, {5, 50, 100}, {6, 40, 100}}}, {0});
    expect("brighter dark frame", {50, 90, 255, 2}, {10, 100, {{4, 10, 90}, {5, 10, 100}}}, {0, 4});
    expect("faintest cut", {0, 25, 255, 3}, {10, 100, {{5, 1, 100}}}, {0, 5});
    expect("no margin can be that great", {255, 25, 255, 3}, {10, 100, {{5, 255, 255}}}, {0});
    expect("no frame is dark", {13, -1, 255, 3}, {12, 30, {{4, 10, 0}, {5, 10, 30}}}, {0});
    // Votes for the frames from 3 on: 2, 1, 1, 2. One right after a reported one is suppressed.
    const Film motion{12, 100, {{3, 50, 100}, {4, 50, 100}, {5, 60, 100}, {6, 50, 100}}};
    expect("one vote", {13, 25, 255, 1}, motion, {0, 3, 5});
    expect("two votes", {13, 25, 255, 2}, motion, {0, 3, 6});
    expect("three votes", {13, 25, 255, 3}, motion, {0});
    expect("four votes", {13, 25, 255, 4}, {10, 100, {{5, 60, 100}}}, {0, 5});
    expect("four votes, one missing", {13, 25, 255, 4}, {10, 100, {{5, 60, 100}, {6, 50, 100}}}, {0});
}

TEST(Decision, TheLongestSceneIsEachDetectorsOwn) {
    const struct {
        std::int32_t processWide;
        std::int32_t own;
        std::vector<int> reported;
    } cases[] = {
        {4, DetectionParameters::kProcessWide, {0, 4, 8}}, {4, 6, {0, 6}}, {4, 0, {0}}, {0, 6, {0, 6}}};
    for (const auto& one : cases) {
        ScriptedDetector detector;
        detector.SetParameters(DetectionParameters{.longestScene = one.own});
        g_maxSceneLength = one.processWide;
        EXPECT_EQ(Report(detector, {14, 100, {}}), one.reported) << one.processWide << '/' << one.own;
        detector.SetParameters(13, 25, 255, 3); // these four only
        detector.Reset();
        EXPECT_EQ(Report(detector, {14, 100, {}}), one.reported) << one.processWide << '/' << one.own;
    }
    g_maxSceneLength = 0;
}

TEST(Decision, ForcedCutEndsScenesThatAreTooLong) {
    ScriptedDetector detector;
    g_maxSceneLength = 4;
    // 4 and 8 are forced; the cut at 10 starts the count anew.
    EXPECT_THAT(Report(detector, {18, 100, {{10, 60, 100}}}), ElementsAre(0, 4, 8, 10, 14));
    detector.Reset();
    // It does not lock the dark frame after it.
    EXPECT_THAT(Report(detector, {10, 30, {{6, 10, 20}, {7, 10, 30}}}), ElementsAre(0, 4, 6));
    g_maxSceneLength = -4; // off
    detector.Reset();
    EXPECT_THAT(Report(detector, {12, 100, {}}), ElementsAre(0));
    g_maxSceneLength = 0;
}

TEST(DecisionTrace, OneLineForEveryJudgedFrame) {
    const LogRecorder log(31);
    ScriptedDetector detector;
    detector.SetStartFrame(28);
    Report(detector, {12, 100, {{31, 60, 100}, {33, 6, 25}, {35, 20, 100}, {37, 9, 100}}});
    // Frame 33 is dark while 31 holds the lock no longer; frame 36 is filled to (9 + 20) / 2.
    std::wstring text;
    for (const std::wstring& line : log.lines)
        text += line;
    EXPECT_EQ(text, L"702/31 [ 30] 1:05     0  100 \n702/31 [ 31] 1:06    60* 100 \n"
                    L"702/31 [ 32] 1:07     0  100 \n702/31 [ 33] 1:08     6*  25*\n"
                    L"702/31 [ 34] 1:09     0  100 \n702/31 [ 35] 1:10    20# 100 \n"
                    L"702/31 [ 36] 1:11    14  100 \n702/31 [ 37] 1:12     9  100 \n");

    const LogRecorder unwanted(30);
    Report(detector, {3, 100, {}});
    EXPECT_TRUE(unwanted.lines.empty());
}

} // namespace
