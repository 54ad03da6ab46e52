#include "tests/Testing.h"
#include "tests/products/cutting/CutMaterial.h"

#include <csignal>
#include <sys/resource.h>

namespace {

// 12 frames with audio, of which no two are equal.
void MakeTape(const std::filesystem::path& target, const std::string& system = "pal-dv") {
    RunFfmpeg({"-f", "lavfi", "-i", "testsrc2=s=720x576:r=25,noise=alls=20:allf=t", "-f", "lavfi", "-i",
               "anoisesrc=r=48000:seed=7", "-t", "1", "-target", system, "-timecode", "10:00:00:00",
               target.string()});
    std::filesystem::resize_file(target, 12 * (system == "pal-dv" ? 144000 : 120000));
}

std::string Joined(const std::vector<WrittenClip>& clips) {
    std::string bytes;
    for (const WrittenClip& clip : clips)
        bytes += ReadWhole(clip.path);
    return bytes;
}

class ClipCutterTest : public Test {
  protected:
    std::vector<WrittenClip> Cut(const std::filesystem::path& file, const std::string& container = "") {
        return CutWhileReading(file, {0, 5, 5, 6}, Into(m_clips, container), m_claims);
    }

    TempFolder m_folder;
    const std::filesystem::path m_tape = m_folder / "tape.dv";
    const std::filesystem::path m_clips = m_folder / "clips" / "of tape";
    OutputClaims m_claims;
};

TEST_F(ClipCutterTest, ClipsJoinedAreTheTape) {
    for (const std::string system : {"pal-dv", "ntsc-dv"}) {
        SCOPED_TRACE(system);
        MakeTape(m_tape, system);
        const std::vector<WrittenClip> clips =
            CutWhileReading(m_tape, {0, 5, 5, 6}, Into(m_folder / system), m_claims);
        std::vector<std::int64_t> frames;
        for (const WrittenClip& clip : clips)
            frames.push_back(clip.frames);
        EXPECT_THAT(frames, ElementsAre(5, 1, 6));
        EXPECT_EQ(clips[1].firstFrame, 5);
        EXPECT_TRUE(Joined(clips) == ReadWhole(m_tape));
        EXPECT_THAT(FilesIn(m_folder / system), ElementsAre("0001.dv", "0002.dv", "0004.dv"));
    }
}

// A scene that is known so late that its frames are in the clip before already, or only at the end.
TEST_F(ClipCutterTest, ScenesFoundLateHaveTheSameClips) {
    MakeTape(m_tape);
    for (const std::string container : {"", "mov"}) {
        std::vector<std::vector<std::string>> kinds;
        for (const std::int64_t delay : {2, 3, 5, 100}) {
            const std::filesystem::path folder = m_folder / (container + std::to_string(delay));
            std::vector<std::string>& bytes = kinds.emplace_back();
            for (const WrittenClip& clip :
                 CutWhileReading(m_tape, {0, 5, 5, 9}, Into(folder, container), m_claims, delay))
                bytes.push_back(std::to_string(clip.firstFrame) + ReadWhole(clip.path));
            EXPECT_EQ(bytes.size(), 3u);
            EXPECT_TRUE(bytes == kinds.front()) << delay;
            EXPECT_EQ(FilesIn(folder).size(), 3u);
        }
    }
}

TEST_F(ClipCutterTest, FramesOfContainersAreTheirPackets) {
    MakeTape(m_tape);
    for (const std::string suffix : {".avi", ".mov", ".mkv"}) {
        SCOPED_TRACE(suffix);
        const std::filesystem::path file = m_folder / ("tape" + suffix);
        RunFfmpeg({"-i", m_tape.string(), "-c", "copy", file.string()});
        const std::filesystem::path raw = m_folder / "raw";
        RunFfmpeg({"-i", file.string(), "-map", "0:v", "-c", "copy", "-f", "rawvideo", raw.string()});
        EXPECT_TRUE(Joined(CutWhileReading(file, {0, 5, 6}, Into(m_folder / suffix), m_claims)) ==
                    ReadWhole(raw));
    }
}

TEST_F(ClipCutterTest, ContainersHoldPicturesAndAudio) {
    MakeTape(m_tape);
    const std::vector<std::string> pictures = PictureHashes(m_tape);
    const std::string audio = Samples(m_tape);
    for (const std::string container : {"avi", "mov", "mkv"}) {
        SCOPED_TRACE(container);
        std::vector<std::string> clipPictures;
        std::string clipAudio;
        for (const WrittenClip& clip : Cut(m_tape, container)) {
            EXPECT_TRUE(clip.path.ends_with("." + container));
            EXPECT_EQ(clip.note, "");
            for (const std::string& picture : PictureHashes(clip.path))
                clipPictures.push_back(picture);
            clipAudio += Samples(clip.path);
        }
        EXPECT_EQ(clipPictures, pictures);
        EXPECT_TRUE(clipAudio == audio);
    }
    // The fifth frame's own.
    EXPECT_THAT(OutputOf({"ffprobe", "-v", "error", "-show_entries", "stream_tags=timecode",
                          (m_clips / "0002.mov").string()}),
                HasSubstr("timecode=10:00:00:05"));
}

TEST_F(ClipCutterTest, AFrameWithoutItsHeaderGoesIntoAContainer) {
    MakeTape(m_tape);
    const std::vector<std::string> pictures = PictureHashes(m_tape);
    std::string bytes = ReadWhole(m_tape);
    WriteBytes(m_tape, bytes.replace(8 * 144000, 80, 80, '\0'));
    const std::vector<WrittenClip> clips = Cut(m_tape, "mov");
    EXPECT_EQ(clips.at(2).note, "the headers of 1 frame are mended");
    EXPECT_EQ(PictureHashes(clips.at(2).path), std::vector(pictures.begin() + 6, pictures.end()));
}

// From the fourth frame on at 32 kHz, where the clip goes on in another; frames that tell another format
// alone, or none, are as long as the others.
TEST_F(ClipCutterTest, AudioIsAsLongAsThePictures) {
    MakeTape(m_tape);
    const std::string samples = Samples(m_tape);
    std::string bytes = ReadWhole(m_tape);
    const auto setSource = [&bytes](std::size_t frame, int sequences, char rate, char bits) {
        for (int i = 0; i < sequences; ++i)
            for (const std::size_t block : {0, 3}) { // as ffmpeg writes them
                char* pack = &bytes[frame * 144000 + i * 12000 + (6 + 16 * block) * 80 + 3];
                if (*pack == 0x50)
                    pack[1] = rate, pack[4] = bits;
            }
    };
    for (std::size_t frame = 4; frame < 12; ++frame)
        setSource(frame, 12, '\xD0', '\x90'); // 1,264 + 16 samples
    setSource(2, 3, '\xFF', '\xFF');          // others still tell
    setSource(3, 12, '\xFF', '\xFF');
    setSource(9, 12, '\xD8', '\x80');
    WriteBytes(m_tape, bytes);
    const std::vector<WrittenClip> clips = CutWhileReading(m_tape, {0}, Into(m_clips, "mov"), m_claims);
    ASSERT_EQ(clips.size(), 2u);
    EXPECT_EQ(clips[0].note,
              "the headers of 1 frame are mended; the audio of 1 frame cannot be read: silence");
    EXPECT_THAT(clips[1].note,
                AllOf(HasSubstr("goes on from "), HasSubstr("48000 Hz 16 bits 2 channels, then 32000"),
                      HasSubstr("the audio of 1 frame cannot be read")));
    EXPECT_EQ(clips[1].firstFrame, 4);
    EXPECT_TRUE(clips[1].path.ends_with("0001-2.mov"));
    EXPECT_TRUE(Samples(clips[0].path) == samples.substr(0, 3 * 1920 * 4) + std::string(1920 * 4, '\0'));
    EXPECT_EQ(Samples(clips[1].path).size(), 8u * 1280 * 4);
    EXPECT_EQ(Samples(clips[1].path).substr(5 * 1280 * 4, 1280 * 4), std::string(1280 * 4, '\0'));
}

TEST_F(ClipCutterTest, RefusalsLeaveNothing) {
    MakeTape(m_tape);
    EXPECT_THAT(MessageOf([&] { Cut(m_tape, "mp4"); }),
                AllOf(HasSubstr("0001.mp4"), HasSubstr("mp4 cannot hold dvvideo")));
    EXPECT_THAT(FilesIn(m_clips), IsEmpty());

    WriteBytes(m_clips / "0002.dv", "mine");
    EXPECT_THAT(MessageOf([&] { Cut(m_tape); }), HasSubstr("0002.dv: exists already; --force overwrites it"));
    EXPECT_EQ(ReadWhole(m_clips / "0002.dv"), "mine");
    EXPECT_THAT(FilesIn(m_clips), ElementsAre("0001.dv", "0002.dv"));
}

TEST_F(ClipCutterTest, AFullDiskLeavesWholeClipsOnly) {
    MakeTape(m_tape);
    rlimit before{};
    getrlimit(RLIMIT_FSIZE, &before);
    std::signal(SIGXFSZ, SIG_IGN);
    for (const std::string container : {"", "mov"}) {
        SCOPED_TRACE(container);
        std::filesystem::remove_all(m_clips);
        // More than the clip of five frames needs, in a container too; too little for that of six.
        const rlimit limit{800000, before.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limit);
        OutputClaims claims;
        const std::string message = MessageOf([&] {
            CutWhileReading(m_tape, {0, 5, 6}, Into(m_clips, container), claims);
        });
        setrlimit(RLIMIT_FSIZE, &before);
        EXPECT_THAT(message, HasSubstr("cannot be written: File too large"));
        const std::string suffix = container.empty() ? ".dv" : ".mov";
        EXPECT_THAT(FilesIn(m_clips), ElementsAre("0001" + suffix, "0002" + suffix));
    }
}

} // namespace
