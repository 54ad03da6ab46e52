// Real material through the whole program: every container and format gives exactly its scenes.
#include "tests/Testing.h"
#include "tests/kxscenes/Material.h"

namespace {

const std::vector<std::int64_t> kCutsAndStart = {0, 20, 33, 47};

// --- DV: two line systems, four containers ---

class DvContainers : public TestWithParam<std::tuple<const char*, const char*>> {};

TEST_P(DvContainers, SameScenesInAll) {
    const auto& [target, extension] = GetParam();
    const TempFolder folder;
    const auto tape = folder / "tape.dv";
    MakeClip(DvClip(target), tape);
    auto input = tape;
    if (extension != std::string("dv"))
        Remux(tape, input = folder / ("tape." + std::string(extension)));

    const ProcessResult video = RunHost({input});
    EXPECT_EQ(video.exitCode, 0);
    EXPECT_EQ(video.err, "");
    const bool isPal = target == std::string("pal-dv");
    EXPECT_THAT(Rows(video), ElementsAre(isPal ? "1,0,00:00:00:00,0.000" : "1,0,00:00:00;00,0.000",
                                         isPal ? "2,20,00:00:00:20,0.800" : "2,20,00:00:00;20,0.667",
                                         isPal ? "3,33,00:00:01:08,1.320" : "3,33,00:00:01;03,1.101",
                                         isPal ? "4,47,00:00:01:22,1.880" : "4,47,00:00:01;17,1.568"));
    // DV goes undecoded: only then is there a recording time to look at.
    EXPECT_EQ(Frames(RunHost({"--method", "timestamp", input})), std::vector<std::int64_t>{0});
}

INSTANTIATE_TEST_SUITE_P(Cases, DvContainers,
                         Combine(Values("pal-dv", "ntsc-dv"), Values("dv", "avi", "mov", "mkv")),
                         [](const auto& each) {
                             return std::string(std::get<0>(each.param), 3) + "_" + std::get<1>(each.param);
                         });

// --- everything else is decoded ---

struct Decoded {
    const char* name;
    const char* extension;
    std::vector<std::string> encoding;
    const char* size = "320x240";
    bool hasShortcut = false;
};

class DecodedFiles : public TestWithParam<Decoded> {};

TEST_P(DecodedFiles, GiveTheirCuts) {
    const TempFolder folder;
    const auto file = folder / ("clip." + std::string(GetParam().extension));
    Clip clip;
    clip.size = GetParam().size;
    clip.encoding = GetParam().encoding;
    MakeClip(clip, file);
    const ProcessResult result = RunHost({file});
    EXPECT_EQ(Frames(result), kCutsAndStart);
    EXPECT_EQ(result.err, "");
    const ProcessResult fast = RunHost({"--decode", "fast", file});
    EXPECT_EQ(Frames(fast), kCutsAndStart);
    EXPECT_THAT(fast.err, GetParam().hasShortcut ? Matcher<std::string>("") : HasSubstr("changes nothing"));
}

const Decoded kDecoded[] = {
    {"H264", "mp4", Words("-c:v libx264 -preset veryfast -pix_fmt yuv420p"), "320x240", true},
    {"H264WithBFramesInTs", "ts", Words("-c:v libx264 -preset veryfast -bf 3 -pix_fmt yuv420p"), "320x240",
     true},
    {"Mpeg2", "mpg", Words("-c:v mpeg2video -q:v 3"), "320x240", true},
    {"MotionJpeg", "avi", Words("-c:v mjpeg -q:v 3 -pix_fmt yuvj420p"), "320x240", true},
    {"LosslessJpeg", "avi", Words("-c:v ljpeg -pix_fmt yuvj420p")},
    {"TenBits", "mkv", Words("-c:v ffv1 -pix_fmt yuv422p10le")},
    {"Rgb", "mkv", Words("-c:v ffv1 -pix_fmt bgr0")},
    {"OddSize", "mkv", Words("-c:v ffv1 -pix_fmt yuv444p"), "325x243"},
    {"RawInMov", "mov", Words("-c:v rawvideo -pix_fmt yuyv422")},
    {"HevcOfTenBits", "mkv",
     Words("-c:v libx265 -preset ultrafast -x265-params log-level=none -pix_fmt yuv420p10le"), "320x240",
     true},
    {"Vp9", "webm", Words("-c:v libvpx-vp9 -deadline realtime -cpu-used 8 -b:v 2M")},
    {"Av1", "mkv", Words("-c:v libsvtav1 -preset 12")},
    {"ProRes", "mov", Words("-c:v prores_ks -pix_fmt yuv422p10le")},
    {"DnxHr", "mxf", Words("-c:v dnxhd -profile:v dnxhr_sq -pix_fmt yuv422p")},
    {"InterlacedVob", "vob", Words("-target pal-dvd -flags +ilme+ildct"), "720x576", true},
    {"Dv50", "mov", Words("-s 720x576 -c:v dvvideo -pix_fmt yuv422p"), "720x576", true},
    {"Mpeg4OfOddSize", "avi", Words("-c:v mpeg4 -q:v 3 -bf 2"), "326x246", true},
    {"Mpeg1", "mpg", Words("-c:v mpeg1video -q:v 3"), "320x240", true},
};
INSTANTIATE_TEST_SUITE_P(Cases, DecodedFiles, ValuesIn(kDecoded), kByName);

// --- the other methods ---

TEST_F(OneClip, TimestampMethodNeedsDv) {
    const ProcessResult result = RunHost({"--method", "timestamp", m_file});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err,
              "kxscenes: error: " + m_file.string() + ": --method timestamp needs DV video of 25 Mbit/s\n");
}

TEST_F(OneClip, MarksGiveScenesWithEveryMethod) {
    const std::string marks = "40,0,7,40,1";
    EXPECT_THAT(Frames(RunHost({"--method", "manual", "--mark", marks, m_file})), ElementsAre(0, 1, 7, 40));
    EXPECT_THAT(Frames(RunHost({"--method", "interval", "--interval", "40", "--mark", marks, m_file})),
                ElementsAre(0, 1, 7, 40));
    // At a cut the mark adds nothing.
    EXPECT_THAT(Frames(RunHost({"--mark", marks + ",20,57", m_file})),
                ElementsAre(0, 1, 7, 20, 33, 40, 47, 57));
}

TEST_F(OneClip, MarksBeyondTheEndAreTold) {
    const ProcessResult manual = RunHost({"--method", "manual", "--mark", "59,60,99", m_file});
    EXPECT_THAT(Frames(manual), ElementsAre(0, 59));
    EXPECT_THAT(manual.err, HasSubstr("no scene for --mark 60,99: the run ended after 60 frames"));
    EXPECT_EQ(manual.exitCode, 0);
    const ProcessResult video = RunHost({"--mark", "58", m_file});
    EXPECT_THAT(Frames(video), ElementsAre(0, 20, 33, 47));
    EXPECT_THAT(video.err, HasSubstr("no scene for --mark 58: the run ended after 60 frames"));
}

TEST(Timecode, ReportsWhereItStarts) {
    const struct {
        const char* target;
        const char* timecode;
        const char* report;
    } cases[] = {
        {"pal-dv", "01:02:03:04", "kxscenes: start timecode 01:02:03:04\n"},
        {"pal-dv", "00:00:00:00", "kxscenes: start timecode 00:00:00:00\n"},
        {"ntsc-dv", "00:10:00;05", "kxscenes: start timecode 00:10:00;05\n"},
        {"pal-dv", "10:00:00:00",
         "kxscenes: no start timecode: the tape's starts at 10:00:00:00, and the filter makes none of four "
         "hours "
         "or more\n"},
    };
    for (const auto& each : cases) {
        const TempFolder folder;
        Clip clip = DvClip(each.target, "2004-07-17T10:30:00", each.timecode);
        clip.cuts = {};
        clip.frames = 3;
        MakeClip(clip, folder / "tape.dv");
        EXPECT_EQ(RunHost({"--timecode", folder / "tape.dv"}).err, each.report);
        EXPECT_EQ(RunHost({folder / "tape.dv"}).err, "");
    }
}

TEST_F(OneClip, TimecodeNeedsDv) {
    EXPECT_EQ(RunHost({"--timecode", m_file}).err, "kxscenes: no DV timecode: the video is not DV\n");
}

TEST(DemoTape, HasTheScenesItPromises) {
    const TempFolder folder;
    const auto tape = folder / "demo.dv";
    ASSERT_EQ(Process({MAKE_DEMO_TAPE, tape}).Wait().exitCode, 0);
    EXPECT_THAT(Frames(RunHost({tape})), ElementsAre(0, 60, 130, 175));
    EXPECT_THAT(Frames(RunHost({"--method", "timestamp", tape})), ElementsAre(0, 130));
}

} // namespace
