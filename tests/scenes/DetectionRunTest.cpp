#include "scenes/DetectionRun.h"

#include "tests/Seeds.h"
#include "tests/TempFolder.h"
#include "tests/Testing.h"

namespace {

constexpr LONGLONG kPal = 400000;

// Streams one frame, with a scene where the test asks for one or a mark is pending.
void Stream(DetectionRun& run, bool scene = false) {
    const auto frame = run.BeginFrame();
    ASSERT_TRUE(frame);
    if (scene || run.IsScenePending())
        run.AddScene(*frame, Dib(), {});
    run.EndFrame(*frame);
}

std::vector<std::uint32_t> Drain(DetectionRun& run) {
    std::vector<std::uint32_t> positions;
    while (const RealtimeScene* scene = run.CheckOutScene()) {
        positions.push_back(scene->m_nPos);
        run.ReleaseScene();
    }
    return positions;
}

TEST(DetectionRun, OffCountsNothing) {
    DetectionRun run;
    EXPECT_FALSE(run.BeginFrame());
    EXPECT_EQ(run.FrameCount(), 0);
    EXPECT_FALSE(run.ReleaseScene());
    EXPECT_EQ(run.CheckOutScene(), nullptr);
}

TEST(DetectionRun, QueueIsDrainedInOrderAndTheFileListsAll) {
    const TempFolder folder;
    const auto path = folder / "scenes.xml";
    DetectionRun run;
    run.SetSceneListFile(Wide(path));
    run.EnableDetection(true);
    EXPECT_FALSE(std::filesystem::exists(path));
    for (const bool scene : {true, false, true, true})
        Stream(run, scene);
    EXPECT_EQ(run.SceneCount(), 3u);
    EXPECT_EQ(Drain(run), (std::vector<std::uint32_t>{0, 2, 3}));

    run.EnableDetection(false);
    const char* expected =
        "<SceneList count=\"3\" method=\"Manual\">\r\n<Scene pos=\"0\"/>\r\n<Scene pos=\"2\"/>\r\n"
        "<Scene pos=\"3\"/>\r\n</SceneList>\r\n";
    EXPECT_EQ(ReadWhole(path), expected);
    EXPECT_EQ(run.FrameCount(), 4) << "the count of the finished run stays";

    // The name is good for one attempt.
    std::filesystem::remove(path);
    run.EnableDetection(true);
    run.EnableDetection(false);
    EXPECT_FALSE(std::filesystem::exists(path));
}

TEST(DetectionRun, StartingDropsScenesMarksAndOffsets) {
    DetectionRun run;
    run.EnableDetection(true);
    Stream(run, true);
    Stream(run);
    run.MarkScene();
    run.m_nFrameOffset = 5;
    run.m_rtTimeOffset = kPal;
    ASSERT_NE(run.CheckOutScene(), nullptr);
    run.EnableDetection(true);
    EXPECT_EQ(run.SceneCount(), 0u);
    EXPECT_FALSE(run.IsSceneCheckedOut());
    EXPECT_FALSE(run.IsScenePending());
    EXPECT_EQ(run.FrameCount(), 0);
    EXPECT_EQ(run.m_nFrameOffset, 0);
    EXPECT_EQ(run.m_rtTimeOffset, 0);
}

TEST(DetectionRun, AnySceneConsumesTheMark) {
    DetectionRun run;
    run.EnableDetection(true);
    Stream(run, true);
    run.MarkScene();
    Stream(run);
    Stream(run);
    EXPECT_EQ(Drain(run), (std::vector<std::uint32_t>{0, 1}));
}

TEST(DetectionRun, PicturesAreDeepCopiesWhileTheyAreKept) {
    BITMAPINFOHEADER header{};
    header.biSize = sizeof header;
    header.biWidth = 2;
    header.biHeight = 1;
    header.biPlanes = 1;
    header.biBitCount = 32;
    header.biSizeImage = 8;
    std::array<std::uint8_t, 8> pixels = {1, 2, 3, 4, 5, 6, 7, 8};
    DetectionRun run;
    run.EnableDetection(true);
    const Dib picture(&header, sizeof header, pixels.data(), pixels.size());
    run.AddScene(*run.BeginFrame(), picture, {});
    run.m_bKeepScenePictures = FALSE;
    run.AddScene(*run.BeginFrame(), picture, {});
    const auto original = std::exchange(pixels, {});

    const RealtimeScene* first = run.CheckOutScene();
    ASSERT_TRUE(first && first->m_dib.IsValid());
    EXPECT_TRUE(std::equal(original.begin(), original.end(), first->m_dib.GetBits()));
    EXPECT_EQ(first->m_dib.GetInfo()->biWidth, 2);
    run.ReleaseScene();
    const RealtimeScene* second = run.CheckOutScene();
    ASSERT_NE(second, nullptr);
    EXPECT_EQ(second->m_dib.GetInfo(), nullptr);
    EXPECT_EQ(second->m_dib.GetBits(), nullptr);
}

TEST(DetectionRun, StartsAreRelativeToTheRunsFirstSample) {
    DetectionRun run;
    run.EnableDetection(true);
    EXPECT_EQ(run.RelativeStart(*run.BeginFrame(), 1000), 0);
    EXPECT_EQ(run.RelativeStart(*run.BeginFrame(), 1700), 700);
    EXPECT_EQ(run.RelativeStart(*run.BeginFrame(), 400), -600);
    run.EnableDetection(true);
    EXPECT_EQ(run.RelativeStart(*run.BeginFrame(), 5000), 0);
    run.EnableDetection(true);
    EXPECT_EQ(run.RelativeStart(*run.BeginFrame(), -999999), 0);
    EXPECT_EQ(run.RelativeStart(*run.BeginFrame(), 5000), 0) << "-999999 means that there is none yet";
    EXPECT_EQ(run.RelativeStart(*run.BeginFrame(), 5001), 1);
}

// A sample in flight while the host switches off belongs to the run that is over: it is counted there, unless
// the host has switched on again.
TEST(DetectionRun, ASampleOfAnEndedRunAddsNothingButItself) {
    for (const bool restarted : {false, true}) {
        DetectionRun run;
        run.EnableDetection(true);
        Stream(run, true);
        const auto inFlight = run.BeginFrame();
        ASSERT_TRUE(inFlight);
        run.EnableDetection(false);
        if (restarted)
            run.EnableDetection(true);
        run.MarkScene();
        run.AddScene(*inFlight, Dib(), {});
        EXPECT_TRUE(run.IsScenePending()) << "the new run's mark is eaten";
        run.EndFrame(*inFlight);
        EXPECT_EQ(run.FrameCount(), restarted ? 0 : 2);
        EXPECT_EQ(run.SceneCount(), 0u);
        if (restarted) {
            run.MarkFrame(*inFlight);
            Stream(run);
            EXPECT_EQ(Drain(run), std::vector<std::uint32_t>{0});
        }
    }
}

TEST(DetectionRun, FiguresOfAnEndedRunLeaveNoTrace) {
    DetectionRun run;
    KxFrameFigures figures[9];
    run.EnableFigures(true);
    run.EnableDetection(true);
    run.NoteFigures(*run.BeginFrame(), {.difference = 7});
    run.EndFrame(*run.BeginFrame());
    const auto inFlight = run.BeginFrame();
    EXPECT_EQ(run.TakeFigures(figures), 0u) << "held back";
    run.EnableDetection(false);
    run.NoteFigures(*inFlight, {.difference = 8});
    ASSERT_EQ(run.TakeFigures(figures), 1u);
    EXPECT_EQ(figures[0].nDifference, 7);
    run.EnableDetection(true);
    run.NoteFigures(*inFlight, {.difference = 8});
    run.NoteFigures(*run.BeginFrame(), {.difference = 9});
    run.EnableDetection(false);
    ASSERT_EQ(run.TakeFigures(figures), 1u);
    EXPECT_EQ(figures[0].nDifference, 9);
}

TEST(FrameCounter, NoFrameIsLostWhenARunEnds) {
    FrameCounter counter;
    ForEachSeed(100, [&counter](unsigned round) {
        std::atomic<std::uint32_t> counted = 0;
        counter.Start();
        std::jthread streaming([&] {
            for (; const auto frame = counter.Current(); ++counted)
                counter.Advance(*frame);
        });
        while (counted < round % 50)
            std::this_thread::yield();
        counter.Stop();
        streaming.join();
        ASSERT_EQ(counter.Count(), counted);
    });
}

// Run again and again while frames stream, with a scene each: a run's scenes begin at its first frame and
// leave none out, and its figures and times are its own.
TEST(DetectionRun, RestartsLeaveNothingOfTheRunBefore) {
    DetectionRun run;
    run.m_nMethod = KxMethodInterval;
    run.EnableFigures(true);
    constexpr int kMostFrames = 1000; // of a run: figures are kept of a number of them
    std::atomic<bool> done = false;
    std::jthread streaming([&] {
        for (LONGLONG start = 0; !done; start += kPal) {
            const auto frame = run.BeginFrame();
            if (!frame || frame->number == kMostFrames)
                continue;
            EXPECT_EQ(run.RelativeStart(*frame, start) == 0, frame->number == 0);
            run.MarkFrame(*frame);
            run.NoteFigures(*frame, {.difference = frame->number});
            run.AddScene(*frame, Dib(), {});
            run.EndFrame(*frame);
        }
    });
    ForEachSeed(200, [&run](unsigned restart) {
        run.EnableDetection(true);
        std::uint32_t next = 0;
        while (next < restart % 20) {
            for (const std::uint32_t position : Drain(run))
                ASSERT_EQ(position, next++);
            std::this_thread::yield();
        }
        if (restart % 3 == 0)
            return; // straight into the next run
        run.EnableDetection(false);
        EXPECT_EQ(run.SceneCount(), 0u);
        KxFrameFigures figures[64];
        std::uint32_t position = 0;
        while (const std::size_t taken = run.TakeFigures(figures))
            for (const KxFrameFigures& one : std::span(figures).first(taken)) {
                ASSERT_EQ(one.dwPosition, position);
                ASSERT_EQ(one.nDifference, static_cast<LONG>(position++));
            }
        EXPECT_GE(position, next);
    });
    done = true;
}

} // namespace
