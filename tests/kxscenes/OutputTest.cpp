// What the program leaves behind: the scene list, its exit codes, an early end, the trace, memory.
#include "tests/Testing.h"
#include "tests/kxscenes/Material.h"

#include <csignal>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

using namespace std::chrono_literals;

class Output : public OneClip {};

TEST_F(Output, StandardOutputThatCannotBeWritten) {
    ProcessSetup full;
    full.outPath = "/dev/full";
    ProcessSetup closed;
    closed.closeOutput = true;
    for (const ProcessSetup& setup : {full, closed}) {
        const ProcessResult result = RunHost({"--xml", m_folder / "list.xml", m_file}, setup);
        EXPECT_EQ(result.exitCode, 1);
        EXPECT_THAT(Lines(result.err), ElementsAre(HasSubstr("standard output")));
    }
    EXPECT_EQ(RunHost({"--help"}, full).exitCode, 1);
}

// A pipe that the test feeds, and that stalls in the middle of a frame when the signal comes.
class Interrupted : public TestWithParam<int> {};

TEST_P(Interrupted, EndsAtOnceAndCleanly) {
    const TempFolder folder;
    MakeClip(DvClip("pal-dv"), folder / "tape.dv");
    const std::string tape = ReadWhole(folder / "tape.dv");
    const auto pipe = folder / "pipe.dv";
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    std::signal(SIGPIPE, SIG_IGN);
    for (const bool isStandardInput : {false, true}) {
        ProcessSetup setup;
        if (isStandardInput)
            setup.inPath = pipe;
        Process host({KxscenesProgram(), "--xml", folder / "list.xml", isStandardInput ? "-" : pipe.string()},
                     setup);
        const int feed = open(pipe.c_str(), O_WRONLY);
        ASSERT_GE(feed, 0);
        // Scenes come out as soon as they can be known: the one at 47 by frame 49.
        const std::size_t bytes = 50 * 144'000 + 1000;
        ASSERT_EQ(write(feed, tape.data(), bytes), static_cast<ssize_t>(bytes));
        while (Lines(host.OutputSoFar()).size() < 5)
            std::this_thread::sleep_for(5ms);
        host.Signal(GetParam());
        // Nothing more comes, and the pipe stays open.
        const ProcessResult result = host.Wait();
        close(feed);

        EXPECT_EQ(result.exitCode, 128 + GetParam());
        EXPECT_THAT(Frames(result), ElementsAre(0, 20, 33, 47));
        EXPECT_THAT(Lines(result.err),
                    ElementsAre(HasSubstr("stopped after 50 frames"),
                                HasSubstr("of the first 50 frames only: " + (folder / "list.xml").string())));
        EXPECT_THAT(ReadWhole(folder / "list.xml"), HasSubstr("count=\"4\""));
        EXPECT_THAT(ReadWhole(folder / "list.xml"), EndsWith("</SceneList>\r\n"));
    }
}

// The run waits for a reader of its list, with the last clip not whole yet.
TEST_P(Interrupted, TheSecondSignalLeavesNothingHidden) {
    const TempFolder folder;
    MakeClip(DvClip("pal-dv"), folder / "tape.dv");
    const auto pipe = folder / "list.csv";
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    Process host({KxscenesProgram(), "-o", pipe, "--split", folder / "clips", folder / "tape.dv"});
    const auto hidden = [&folder] {
        std::error_code none;
        int count = 0;
        for (const auto& entry : std::filesystem::directory_iterator(folder / "clips", none))
            count += entry.path().filename().native().front() == '.';
        return count;
    };
    while (Lines(host.OutputSoFar()).size() < 5 || hidden() != 1) // a scene is printed before its clip begins
        std::this_thread::sleep_for(5ms);
    do { // signals that come too fast are one
        host.Signal(GetParam());
        std::this_thread::sleep_for(20ms);
    } while (!host.HasEnded());
    EXPECT_EQ(host.Wait().exitCode, 128 + GetParam());
    EXPECT_EQ(hidden(), 0);
}

INSTANTIATE_TEST_SUITE_P(Signals, Interrupted, Values(SIGINT, SIGTERM, SIGHUP), [](const auto& each) {
    return each.param == SIGINT ? "Int" : each.param == SIGTERM ? "Term" : "HangUp";
});

TEST(StandardInput, IsReadLikeAFile) {
    const TempFolder folder;
    MakeClip(DvClip("ntsc-dv"), folder / "tape.dv");
    WriteBytes(folder / "garbage.dv", std::string(5000, 'x') + ReadWhole(folder / "tape.dv"));
    Remux(folder / "tape.dv", folder / "tape.mkv");
    Remux(folder / "tape.dv", folder / "tape.mov"); // its index is at the end
    for (const char* name : {"tape.dv", "garbage.dv", "tape.mkv", "tape.mov"}) {
        ProcessSetup redirected;
        redirected.inPath = folder / name;
        const ProcessResult result = RunHost({"-"}, redirected);
        EXPECT_THAT(Frames(result), ElementsAre(0, 20, 33, 47)) << name << result.err;
        if (name == std::string("tape.mov"))
            continue;
        const ProcessResult piped =
            Process({"sh", "-c", "cat \"$1\" | \"$0\" -", KxscenesProgram(), folder / name}).Wait();
        EXPECT_EQ(piped.out, result.out) << name;
        EXPECT_EQ(piped.err, result.err) << name;
    }
}

TEST_F(Output, TraceHasALineAJudgedFrame) {
    ProcessSetup traced;
    traced.environment = {{"LD_LIBRARY_PATH", LogFolder()}, {"TPLOG_LEVEL", "31"}};
    const ProcessResult result = RunHost({m_file}, traced);
    EXPECT_EQ(Frames(result), (std::vector<std::int64_t>{0, 20, 33, 47}));
    int judged = 0;
    for (const std::string& line : Lines(result.err))
        judged += line.find("[ ") != std::string::npos ? 1 : 0;
    // Of 60 frames the first four calls are warm-up; the others judge frames 2 to 57.
    EXPECT_EQ(judged, 56) << result.err;

    ProcessSetup silent;
    silent.environment = {{"TPLOG_LEVEL", "31"}};
    EXPECT_EQ(RunHost({m_file}, silent).err, "");
}

// The loader takes an empty entry in a program's path for the current folder.
TEST(Libraries, AreNotTakenFromTheCurrentFolder) {
    const TempFolder folder;
    for (const char* name : {"libKxSceneDetect2.so.0", "libpugixml.so.1", "libavformat.so.59"})
        WriteBytes(folder / name, "");
    const std::string run = "cd \"$1\" && exec \"$0\" --version";
    EXPECT_EQ(Process({"sh", "-c", run, KxscenesProgram(), folder / ""}).Wait().exitCode, 0);
}

// Not with sanitizers, which keep freed memory.
TEST(Memory, DoesNotGrowWithTheInput) {
    constexpr long kRoomKilobytes = 8 * 1024;
    const TempFolder folder;
    MakeClip(DvClip("pal-dv"), folder / "part.dv");
    const std::string part = ReadWhole(folder / "part.dv");
    std::ofstream longTape(folder / "long.dv", std::ios::binary);
    for (int i = 0; i < 20; ++i)
        longTape << part;
    longTape.close();
    EXPECT_NEAR(RunHost({folder / "part.dv"}).peakKilobytes, RunHost({folder / "long.dv"}).peakKilobytes,
                kRoomKilobytes);

    // Decoded, at a variable rate and with packets of all sizes: nothing that the sample table could join.
    const auto irregular = [&](int frames) {
        const auto file = folder / ("clip" + std::to_string(frames) + ".mp4");
        Clip clip;
        clip.cuts = {};
        clip.frames = frames;
        clip.encoding = Words("-vf setpts='(N+0.3*mod(N*N,3))/25/TB' -vsync vfr -c:v libx264 -preset "
                              "ultrafast -video_track_timescale 90000");
        MakeClip(clip, file);
        return RunHost({file}).peakKilobytes;
    };
    EXPECT_NEAR(irregular(250), irregular(1500), kRoomKilobytes);
}

} // namespace
