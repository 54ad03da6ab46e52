// Inputs that are broken, or are no videos: one clear line, and never a crash.
#include "engine/Dif.h"
#include "tests/Testing.h"
#include "tests/kxscenes/Material.h"

namespace {

TEST(NoVideo, GivesOneLine) {
    const TempFolder folder;
    WriteBytes(folder / "empty.dv", "");
    WriteBytes(folder / "text.txt", "Nothing to see here.\nReally.\n");
    WriteBytes(folder / "text.dv", "Nothing to see here.\n");
    RunFfmpeg({"-f", "lavfi", "-i", "sine=d=1", (folder / "audio.wav").string()});
    MakeClip(DvClip("pal-dv"), folder / "tape.dv");
    const std::string tape = ReadWhole(folder / "tape.dv");
    WriteBytes(folder / "short.dv", tape.substr(0, 3000));
    Remux(folder / "tape.dv", folder / "tape.mov");
    const std::string mov = ReadWhole(folder / "tape.mov");
    WriteBytes(folder / "headless.mov", mov.substr(0, mov.size() / 2));
    std::filesystem::create_directory(folder / "folder.dv");

    for (const char* name : {"empty.dv", "text.txt", "text.dv", "audio.wav", "short.dv", "headless.mov",
                             "folder.dv", "missing.dv"}) {
        const ProcessResult result = RunHost({folder / name});
        EXPECT_EQ(result.exitCode, 1) << name;
        EXPECT_EQ(result.out, "") << name;
        EXPECT_THAT(Lines(result.err), ElementsAre(HasSubstr(": " + (folder / name).string() + ": ")));
    }
    EXPECT_THAT(RunHost({folder / "audio.wav"}).err, HasSubstr("no video stream"));
    EXPECT_THAT(RunHost({folder / "text.txt"}).err,
                AnyOf(HasSubstr("no video stream"), HasSubstr("Invalid data")));
    EXPECT_THAT(RunHost({folder / "missing.dv"}).err, HasSubstr("No such file"));
}

class DamagedTape : public TestWithParam<const char*> {};

INSTANTIATE_TEST_SUITE_P(Systems, DamagedTape, Values("pal-dv", "ntsc-dv"),
                         [](const auto& each) { return std::string(each.param, 3); });

// What is wrong with raw DV costs no cut, and is told once.
TEST_P(DamagedTape, KeepsItsCuts) {
    const TempFolder folder;
    const auto file = folder / "tape.dv";
    MakeClip(DvClip(GetParam()), file);
    std::string tape = ReadWhole(file);
    const std::size_t size = tape.size() / 60;
    tape.resize(59 * size + 99'999);
    tape.erase(40 * size, size);
    tape.replace(36 * size, 160, 160, '\0');
    tape.replace(25 * size, size, size, '\xFF');
    tape.erase(10 * size + 50'000, 80);
    tape.insert(0, 4000, '\x55');
    WriteBytes(file, tape);
    const ProcessResult result = RunHost({file});
    EXPECT_THAT(Frames(result), ElementsAre(0, 20, 33, 47));
    const auto place = [&](std::size_t frame, std::size_t bytes) {
        return std::to_string(frame) + " at byte " + std::to_string(frame * size + bytes);
    };
    const std::string begin = "kxscenes: warning: " + file.string() + ": ";
    EXPECT_THAT(
        Lines(result.err),
        ElementsAre(
            begin + "4000 bytes at byte 0 are no DV, before frame 0",
            begin + "frame " + place(10, 4000) + " is left out: 80 bytes of it are missing",
            begin + "frame " + place(25, 3920) + " is left out: no DV in " + std::to_string(size) + " bytes",
            begin + "frame 36 has 2 damaged blocks, the first at byte " + std::to_string(36 * size + 3920),
            begin + "frame 40 is missing at byte " + std::to_string(40 * size + 3920) +
                ", as the timecode tells",
            begin + "ends at byte " + std::to_string(58 * size + 3920) +
                " inside frame 59, which is left out"));
    EXPECT_EQ(result.exitCode, 3);
}

TEST(RuinedTape, HasTenLinesAndACount) {
    const TempFolder folder;
    const auto file = folder / "tape.dv";
    MakeClip(DvClip("pal-dv"), file);
    std::string tape = ReadWhole(file);
    for (std::size_t frame = 2; frame < 60; frame += 4)
        tape.replace(frame * kDifFrameBytes625 + 8000, 800, 800, '\0');
    WriteBytes(file, tape);
    const ProcessResult result = RunHost({file});
    EXPECT_THAT(Frames(result), ElementsAre(0, 20, 33, 47));
    const std::vector<std::string> lines = Lines(result.err);
    ASSERT_EQ(lines.size(), 11u);
    EXPECT_THAT(lines[9], HasSubstr("frame 38 has 10 damaged blocks"));
    EXPECT_THAT(lines[10], HasSubstr("15 irregularities in all, of which the first 10 were told"));
}

TEST(Dv411Of625, IsRefusedByTheMethodThatWouldMixPlaces) {
    const TempFolder folder;
    Clip clip = DvClip("pal-dv");
    clip.encoding = Words("-c:v dvvideo -pix_fmt yuv411p -f rawvideo");
    MakeClip(clip, folder / "tape.dv");
    clip.encoding.resize(4);
    MakeClip(clip, folder / "tape.mov");
    for (const char* name : {"tape.dv", "tape.mov"}) {
        const ProcessResult refused = RunHost({folder / name});
        EXPECT_EQ(refused.exitCode, 1);
        EXPECT_EQ(refused.out, "");
        EXPECT_THAT(Lines(refused.err), ElementsAre(HasSubstr("can't compare 4:1:1 DV of 625 lines")));
        EXPECT_THAT(Frames(RunHost({"--method", "interval", "--interval", "30", folder / name})),
                    ElementsAre(0, 30));
        EXPECT_THAT(Frames(RunHost({"--method", "timestamp", folder / name})), ElementsAre(0));
    }
}

TEST(Dv50, IsDecodedFromRawStreamsToo) {
    const TempFolder folder;
    Clip clip = DvClip("pal-dv");
    clip.encoding = Words("-c:v dvvideo -pix_fmt yuv422p -f rawvideo");
    MakeClip(clip, folder / "tape.dv");
    EXPECT_THAT(Frames(RunHost({folder / "tape.dv"})), ElementsAre(0, 20, 33, 47));
}

TEST(DamagedContainer, ABrokenDvFrameIsLeftOutAndCounted) {
    const TempFolder folder;
    MakeClip(DvClip("ntsc-dv"), folder / "tape.dv");
    const std::string frame = ReadWhole(folder / "tape.dv").substr(14 * kDifFrameBytes525, kDifFrameBytes525);
    Remux(folder / "tape.dv", folder / "tape.avi");
    std::string avi = ReadWhole(folder / "tape.avi");
    // All its sequences now claim 625 lines, which its size contradicts.
    const std::size_t at = avi.find(frame);
    ASSERT_NE(at, std::string::npos);
    for (std::size_t sequence = 0; sequence < 10; ++sequence)
        avi[at + sequence * kDifSequenceBytes + 3] = static_cast<char>(0xBF);
    WriteBytes(folder / "tape.avi", avi);

    const ProcessResult result = RunHost({"--method", "interval", "--interval", "10", folder / "tape.avi"});
    EXPECT_THAT(Frames(result), ElementsAre(0, 10, 21, 31, 41, 51));
    EXPECT_THAT(Lines(result.err), ElementsAre(HasSubstr("frame 14 is damaged and left out")));
    EXPECT_EQ(result.exitCode, 0);
}

TEST(DamagedContainer, BreakingOffIsTold) {
    const TempFolder folder;
    MakeClip(DvClip("pal-dv"), folder / "tape.dv");
    for (const char* name : {"tape.mkv", "tape.avi"}) {
        Remux(folder / "tape.dv", folder / name);
        const std::string whole = ReadWhole(folder / name);
        WriteBytes(folder / name, whole.substr(0, whole.size() / 2));
        const ProcessResult result = RunHost({folder / name});
        EXPECT_THAT(Frames(result), ElementsAre(0, 20)) << name;
        EXPECT_THAT(result.err, HasSubstr(": " + (folder / name).string() + ": ")) << name;
        EXPECT_EQ(result.exitCode, 3) << name;
    }
}

} // namespace
