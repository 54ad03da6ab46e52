#include "products/muxing/Mp4Boxes.h"
#include "tests/Testing.h"
#include "tests/products/cutting/CutMaterial.h"

namespace {

constexpr int kFrames = 100;

struct Kind {
    const char* name;
    const char* file;
    std::vector<std::string> encoding;
    std::vector<std::int64_t> starts; // of the packets of clips, where scenes begin at 0, 30, 31 and 70
};

const auto kH264 = Words("-c:v libx264 -g 24 -keyint_min 24 -sc_threshold 0 -bf 3 -b_strategy 0 -c:a aac");
const auto kMpeg2 = Words("-c:v mpeg2video -g 12 -bf 2 -sc_threshold 1000000000 -b:v 8M -c:a mp2");
const auto kMpeg4 = Words("-c:v mpeg4 -g 12 -bf 2 -sc_threshold 1000000000 -b:v 4M -c:a mp3");
const auto kMjpeg = Words("-c:v mjpeg -c:a pcm_s16le");
const auto kProres = Words("-c:v prores_ks -c:a pcm_s16le");
const auto kHevc = Words("-c:v libx265 -preset ultrafast -x265-params "
                         "log-level=error:keyint=24:min-keyint=24:scenecut=0:bframes=3:open-gop=1 -c:a aac");

std::vector<std::string> With(std::vector<std::string> list, const std::vector<std::string>& more) {
    list.insert(list.end(), more.begin(), more.end());
    return list;
}

const Kind kKinds[] = {
    {"H264InMp4", "film.mp4", kH264, {0, 24, 24, 48}},
    {"H264InMov", "film.mov", kH264, {0, 24, 24, 48}},
    {"H264OfOpenGroupsInMp4", "film.mp4", With(kH264, {"-x264-params", "open-gop=1"}), {0, 24, 24, 48}},
    {"HevcOfOpenGroupsInMp4", "film.mp4", kHevc, {0, 24, 24, 48}},
    {"Mpeg2InMp4", "film.mp4", kMpeg2, {0, 24, 24, 60}},
    {"ProresInMov", "film.mov", kProres, {0, 30, 31, 70}},
    {"H264InMatroska", "film.mkv", kH264, {0, 24, 24, 48}},
    {"H264InTransportStream", "film.ts", kH264, {0, 24, 24, 48}},
    {"H264OfOpenGroups", "film.mkv", With(kH264, {"-x264-params", "open-gop=1"}), {0, 24, 24, 48}},
    {"Mpeg2", "film.mpg", kMpeg2, {0, 24, 24, 60}},
    {"Mpeg2InTransportStream", "film.ts", kMpeg2, {0, 24, 24, 60}},
    {"Mpeg2InMxfAsMov", "film.mxf", With(kMpeg2, {"-c:a", "pcm_s16le"}), {0, 24, 24, 60}},
    {"Mpeg4InAvi", "film.avi", kMpeg4, {0, 24, 24, 60}},
    {"MjpegInAvi", "film.avi", kMjpeg, {0, 30, 31, 70}},
    {"MjpegInMov", "film.mov", kMjpeg, {0, 30, 31, 70}},
};

class CutPacketsTest : public TestWithParam<Kind> {
  protected:
    static constexpr std::int64_t kScenes[] = {0, 30, 31, 70, kFrames};
    TempFolder m_folder;
    std::filesystem::path m_film;
};

// All packets, known by their bytes, are moved by the same time, and the audio lasts as long as the pictures.
void ExpectInStep(const std::filesystem::path& film, const std::string& clip, double length) {
    constexpr double kPacket = 0.045; // of the audio, at most, and the rounding of stamps
    constexpr double kRounding = 0.003;
    const bool isAvi = film.extension() == ".avi"; // begins audio with the first picture, come what may
    const auto source = Packets(film);
    std::vector<double> shifts, audio, pictures;
    for (const auto& [hash, place] : Packets(clip)) {
        (place.isVideo ? pictures : audio).push_back(place.seconds);
        const bool isMoved = isAvi && place.isVideo && place.seconds == 0; // to where its follower was
        if (const auto same = source.find(hash); same != source.end() && !isMoved)
            shifts.push_back(same->second.seconds - place.seconds);
    }
    EXPECT_NEAR(std::ranges::min(shifts), std::ranges::max(shifts), isAvi ? kPacket : kRounding);
    EXPECT_NEAR(std::ranges::min(audio), std::ranges::min(pictures), kPacket);
    EXPECT_NEAR(std::ranges::max(audio), std::ranges::min(pictures) + length, kPacket);
}

TEST_P(CutPacketsTest, PicturesAndAudioAreThoseOfTheSourceFromTheKeyFrameOn) {
    m_film = m_folder / GetParam().file;
    MakeFilm(m_film, GetParam().encoding);
    const std::vector<std::string> source = PictureHashes(m_film);
    const auto clips = CutAfterReading(m_film, {0, 30, 31, 70}, Into(m_folder / "clips"));
    ASSERT_THAT(clips, SizeIs(4));
    for (std::size_t i = 0; i < clips.size(); ++i) {
        SCOPED_TRACE(clips[i].path);
        const std::int64_t start = GetParam().starts[i];
        EXPECT_EQ(clips[i].firstFrame, kScenes[i]);
        EXPECT_EQ(clips[i].framesEarly, kScenes[i] - start);
        EXPECT_EQ(clips[i].bytes, static_cast<std::int64_t>(std::filesystem::file_size(clips[i].path)));
        std::vector<std::string> pictures = PictureHashes(clips[i].path);
        const std::vector<std::string> expected(source.begin() + start, source.begin() + kScenes[i + 1]);
        if (clips[i].hidesOthers) {
            EXPECT_EQ(pictures, std::vector(source.begin() + kScenes[i], source.begin() + kScenes[i + 1]));
            EXPECT_EQ(clips[i].note, "");
        } else {
            // After the end there may be pictures that an earlier one was made from.
            EXPECT_LE(pictures.size(), expected.size() + 2);
            pictures.resize(expected.size());
            EXPECT_EQ(pictures, expected);
        }
        if (m_film.extension() != ".mxf") // of which the library knows places, not times
            ExpectInStep(m_film, clips[i].path, static_cast<double>(expected.size()) * 0.04);
    }
}

INSTANTIATE_TEST_SUITE_P(Kinds, CutPacketsTest, ValuesIn(kKinds), kByName);

class CutFilmTest : public Test {
  protected:
    TempFolder m_folder;
    const std::filesystem::path m_clips = m_folder / "clips";
};

TEST_F(CutFilmTest, TellsWhereClipsBeginAndKeepsWhatIsKnownOfTheSource) {
    MakeFilm(m_folder / "a.mov", With(kH264, {"-timecode", "10:00:00:00", "-metadata", "title=Holiday"}));
    RunFfmpeg({"-i", m_folder / "a.mov", "-c", "copy", "-metadata:s:v", "rotate=90", m_folder / "film.mov"});
    const auto clips = CutAfterReading(m_folder / "film.mov", {0, 30, 31}, Into(m_clips));
    const auto expectTold = [](const WrittenClip& clip, const std::vector<std::string>& lines) {
        const std::string told =
            OutputOf({"ffprobe", "-v", "error", "-show_format", "-show_streams", clip.path});
        for (const std::string& line : lines)
            EXPECT_THAT(told, HasSubstr(line)) << clip.path;
    };
    expectTold(clips.at(1), {"timecode=10:00:01:05", "title=Holiday", "rotation=90", "duration=0.040000"});
    const auto others = CutAfterReading(m_folder / "film.mov", {0, 30, 31}, Into(m_clips, "mkv"));
    EXPECT_EQ(others.at(0).note, "ends 2 frames late");
    EXPECT_EQ(others.at(1).note, "starts 6 frames early, at the key frame 24; ends 1 frame late");
    expectTold(others.at(1), {"10:00:00:24", "Holiday", "start_time=0.000000"});
}

// From 1.0 to 1.5 s and from 2 to 3.5 s; a clip has what is shown in it, for as long.
TEST_F(CutFilmTest, SubtitlesAreCutOrToldToBeMissing) {
    WriteBytes(m_folder / "a.srt",
               "1\n00:00:01,000 --> 00:00:01,500\none\n\n2\n00:00:02,000 --> 00:00:03,500\ntwo\n");
    MakeFilm(m_folder / "a.mp4", kH264);
    const std::filesystem::path film = m_folder / "film.mkv";
    RunFfmpeg({"-i", m_folder / "a.mp4", "-i", m_folder / "a.srt", "-c", "copy", film});
    std::string shown;
    for (const WrittenClip& clip : CutAfterReading(film, {0, 30, 75}, Into(m_clips)))
        shown += OutputOf({"ffprobe", "-v", "error", "-select_streams", "s", "-show_entries",
                           "packet=pts_time,duration_time", "-of", "csv=p=0", clip.path}) +
                 "/";
    // From the key frames at 0, 24 and 72 on.
    EXPECT_EQ(shown, "1.000000,0.200000\n/0.040000,0.500000\n1.040000,1.000000\n/0.000000,0.620000\n/");
    EXPECT_THAT(PlanClips(film.native(), Into(m_clips)).notes, IsEmpty());
    EXPECT_THAT(PlanClips(film.native(), Into(m_clips, "mp4")).notes,
                ElementsAre("clips are without its subtitles (subrip), which mp4 cannot hold"));
    EXPECT_THAT(CutAfterReading(film, {0, 30}, Into(m_folder / "mp4", "mp4")), SizeIs(2));
}

// Of the key frames 48, 72 and 96 the last lies in the last 24 frames, which are as many as are decoded
// before 70.
TEST_F(CutFilmTest, AsMuchOfTheEndAsIsHiddenHasNoMarkedKeyFrames) {
    MakeFilm(m_folder / "film.mp4", kH264);
    const std::string clip =
        ReadWhole(CutAfterReading(m_folder / "film.mp4", {0, 70}, Into(m_clips)).at(1).path);
    const std::span bytes(reinterpret_cast<const std::uint8_t*>(clip.data()), clip.size());
    EXPECT_EQ(ReadMp4Number(bytes, clip.rfind("stss") + 8, 4), 2u);
}

TEST_F(CutFilmTest, AudioWithoutCompressionIsCutToTheSample) {
    for (const auto& [encoding, container] :
         {std::pair(kMjpeg, "mkv"), std::pair(With(kMpeg2, {"-c:a", "pcm_s16le"}), "mov")}) {
        const std::filesystem::path film = m_folder / (std::string(container) + ".mov");
        MakeFilm(film, encoding);
        std::string audio;
        for (const WrittenClip& clip : CutAfterReading(film, {0, 30, 31, 70}, Into(m_clips, container)))
            audio += Samples(clip.path);
        EXPECT_TRUE(audio == Samples(film)) << container;
    }
}

// Its time stamps begin anew in the middle.
TEST_F(CutFilmTest, JoinedStreamsAreOne) {
    const std::filesystem::path film = m_folder / "film.ts";
    MakeFilm(film, kH264);
    const std::string part = ReadWhole(film);
    const std::vector<std::string> pictures = PictureHashes(film);
    WriteBytes(film, part + part);
    const auto clips = CutAfterReading(film, {0, 90, 100, 148}, Into(m_clips));
    EXPECT_EQ(clips.at(1).framesEarly, 18); // from 72
    EXPECT_EQ(PictureHashes(clips.at(1).path), std::vector(pictures.begin() + 72, pictures.end()));
    EXPECT_EQ(clips.at(3).framesEarly, 0);
    EXPECT_EQ(PictureHashes(clips.at(3).path), std::vector(pictures.begin() + 48, pictures.end()));
}

TEST_F(CutFilmTest, RefusalsAreClearAndLeaveNothing) {
    struct Refusal {
        const char* file;
        const char* audio;
        const char* container;
        const char* message;
    };
    const Refusal cases[] = {
        {"film.avi", "pcm_s16le", "mp4", "0001.mp4: mp4 cannot hold pcm_s16le; --container mkv holds most"},
        {"film.avi", "pcm_s16le", "mkv",
         "0001.mkv: the source has no presentation times (PTS) for its reordered pictures, which matroska "
         "needs"},
        // The one that is refused is named, by the library's own message.
        {"film.mkv", "flac", "mov", "0001.mov: mov refuses the streams (h264, flac): flac"}};
    for (const auto& [file, audio, container, message] : cases) {
        const std::filesystem::path film = m_folder / file;
        MakeFilm(film, With(kH264, {"-c:a", audio}));
        EXPECT_THAT(MessageOf([&, kind = container] {
                        CutAfterReading(film, {0, 30}, Into(m_clips, kind));
                    }),
                    HasSubstr(message));
        EXPECT_THAT(FilesIn(m_clips), IsEmpty());
    }
}

} // namespace
