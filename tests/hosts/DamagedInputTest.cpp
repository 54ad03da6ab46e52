// Inputs that are broken, or are no videos: one clear line, and never a crash.
#include "engine/Dif.h"
#include "tests/hosts/HostProcess.h"
#include "tests/hosts/Material.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <random>

namespace scenedetect {
namespace {

using namespace testing_support;
using testing::ElementsAre;
using testing::HasSubstr;

TEST(NoVideo, GivesOneLine) {
    const TempFolder folder;
    WriteBytes(folder / "empty.dv", "");
    WriteBytes(folder / "text.txt", "Nothing to see here.\nReally.\n");
    WriteBytes(folder / "text.dv", "Nothing to see here.\n");
    RunFfmpeg({"-f", "lavfi", "-i", "sine=d=1", (folder / "sound.wav").string()});
    MakeClip(DvClip("pal-dv"), folder / "tape.dv");
    const std::string tape = ReadWhole(folder / "tape.dv");
    WriteBytes(folder / "short.dv", tape.substr(0, 3000));
    Remux(folder / "tape.dv", folder / "tape.mov");
    const std::string mov = ReadWhole(folder / "tape.mov");
    WriteBytes(folder / "headless.mov", mov.substr(0, mov.size() / 2));
    std::filesystem::create_directory(folder / "folder.dv");

    for (const char* name : {"empty.dv", "text.txt", "text.dv", "sound.wav", "short.dv", "headless.mov",
                             "folder.dv", "missing.dv"}) {
        const ProcessResult result = RunHost({folder / name});
        EXPECT_EQ(result.exitCode, 1) << name;
        EXPECT_EQ(result.out, "") << name;
        EXPECT_THAT(Lines(result.err),
                    ElementsAre(HasSubstr("kxscenes: " + (folder / name).string() + ": ")));
    }
    EXPECT_THAT(RunHost({folder / "sound.wav"}).err, HasSubstr("no video stream"));
    EXPECT_THAT(RunHost({folder / "text.txt"}).err,
                testing::AnyOf(HasSubstr("no video stream"), HasSubstr("Invalid data")));
    EXPECT_THAT(RunHost({folder / "missing.dv"}).err, HasSubstr("No such file"));
}

class RawDv : public testing::Test {
  protected:
    void SetUp() override {
        MakeClip(DvClip("pal-dv"), m_folder / "tape.dv");
        m_tape = ReadWhole(m_folder / "tape.dv");
        ASSERT_EQ(m_tape.size(), 60 * kDifFrameBytes625);
    }
    // Every tenth sample's frame.
    ProcessResult RunOn(const std::string& bytes) {
        WriteBytes(m_folder / "damaged.dv", bytes);
        return RunHost({"--method", "interval", "--interval", "10", m_folder / "damaged.dv"});
    }
    static std::size_t At(std::size_t frame) { return frame * kDifFrameBytes625; }

    TempFolder m_folder;
    std::string m_tape;
};

TEST_F(RawDv, BreaksOffInsideAFrame) {
    const ProcessResult result = RunOn(m_tape.substr(0, At(34) + 99'999));
    EXPECT_THAT(Frames(result), ElementsAre(0, 10, 20, 30));
    EXPECT_THAT(Lines(result.err), ElementsAre(HasSubstr("ends inside frame 34, which is left out")));
    EXPECT_EQ(result.exitCode, 0);
}

TEST_F(RawDv, AFrameWithoutItsHeaderIsLeftOutAndCounted) {
    m_tape.replace(At(14), 2 * kDifBlockBytes, 2 * kDifBlockBytes, '\xFF');
    const ProcessResult result = RunOn(m_tape);
    EXPECT_THAT(Frames(result), ElementsAre(0, 10, 21, 31, 41, 51));
    EXPECT_THAT(Lines(result.err),
                ElementsAre(HasSubstr("no DV data at byte 2016000, where frame 14 should be")));
}

TEST_F(RawDv, AZeroedFrameIsNoFrameOfTheOtherLineSystem) {
    m_tape.replace(At(14), kDifFrameBytes625, kDifFrameBytes625, '\0');
    const ProcessResult result = RunOn(m_tape);
    EXPECT_THAT(Frames(result), ElementsAre(0, 10, 21, 31, 41, 51));
    EXPECT_THAT(result.out, HasSubstr("\n6,51,00:00:02:01,2.040\n"));
    EXPECT_THAT(Lines(result.err),
                ElementsAre(HasSubstr("no DV data at byte 2016000, where frame 14 should be")));
}

TEST_F(RawDv, BytesBetweenFramesAreSteppedOver) {
    m_tape.insert(At(25), std::string(1234, '\x55'));
    m_tape.insert(At(5), std::string(77, '\x55'));
    const ProcessResult result = RunOn(m_tape);
    EXPECT_THAT(Frames(result), ElementsAre(0, 10, 20, 30, 40, 50));
    EXPECT_THAT(Lines(result.err),
                ElementsAre(HasSubstr("where frame 5 should be"), HasSubstr("2 damaged places in all")));
}

TEST_F(RawDv, OneFlippedBitDoesNotChangeTheLineSystem) {
    m_tape[At(7) + 3] = static_cast<char>(m_tape[At(7) + 3] ^ 0x80);
    const ProcessResult result = RunOn(m_tape);
    EXPECT_THAT(Frames(result), ElementsAre(0, 10, 20, 30, 40, 50));
    EXPECT_EQ(result.err, "");
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
        EXPECT_THAT(result.err, HasSubstr("kxscenes: " + (folder / name).string() + ": ")) << name;
        EXPECT_EQ(result.exitCode, 0) << name;
    }
}

TEST(BitFlips, NeverCrash) {
    const TempFolder folder;
    MakeClip(DvClip("pal-dv"), folder / "clip.dv");
    Remux(folder / "clip.dv", folder / "clip.avi");
    Remux(folder / "clip.dv", folder / "clip.mkv");
    Clip h264;
    h264.encoding = {"-c:v", "libx264", "-preset", "veryfast", "-movflags", "faststart"};
    MakeClip(h264, folder / "clip.mp4");
    std::mt19937 random(7);
    for (const char* name : {"clip.dv", "clip.avi", "clip.mkv", "clip.mp4"}) {
        const std::string whole = ReadWhole(folder / name);
        for (int round = 0; round < 4; ++round) {
            std::string bytes = whole;
            for (int flip = 0; flip < 40; ++flip) {
                // Half of them where the headers are.
                const std::size_t range =
                    flip % 2 == 0 ? bytes.size() : std::min<std::size_t>(bytes.size(), 6000);
                bytes[random() % range] ^= static_cast<char>(1 << random() % 8);
            }
            const auto file = folder / ("flipped-" + std::string(name));
            WriteBytes(file, bytes);
            const ProcessResult result = RunHost({file});
            EXPECT_TRUE(result.exitCode == 0 || result.exitCode == 1)
                << name << ' ' << result.exitCode << result.err;
            EXPECT_EQ(result.exitCode == 1, Rows(result).empty()) << name << ' ' << result.err;
        }
    }
}

} // namespace
} // namespace scenedetect
