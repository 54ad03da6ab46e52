#include "products/muxing/RemuxDv.h"
#include "tests/Testing.h"
#include "tests/products/cutting/CutMaterial.h"

namespace {

class EncodedClips : public Test {
  protected:
    TempFolder m_folder;
    const std::filesystem::path m_clips = m_folder / "clips";

    std::filesystem::path Film(const std::string& name, const std::string& encoding) const {
        MakeFilm(m_folder / name, Words(encoding));
        return m_folder / name;
    }
};

// By encoders that lose nothing, so that each clip shows the very pictures of its scene, at their times.
TEST_F(EncodedClips, PicturesAreThoseOfTheScenes) {
    const std::string h264 = "-c:v libx264 -g 24 -bf 3 -x264-params open-gop=1 -c:a aac ";
    const struct {
        const char* name;
        std::string encoding;
        std::string encoder;
        const char* container;
    } cases[] = {{"a.mp4", h264, "libx264:qp=0:preset=ultrafast", "mkv"},
                 {"b.mp4", h264, "libx264:qp=0:preset=veryfast", ""},
                 {"c.mkv", h264 + "-vf select='mod(n,3)' -vsync vfr", "ffv1", ""},
                 {"d.avi", "-c:v mpeg4 -bf 2 -g 12 -c:a mp3", "ffv1", ""}};
    for (const auto& [name, encoding, encoder, container] : cases) {
        SCOPED_TRACE(name);
        const std::filesystem::path film = Film(name, encoding);
        const auto source = PictureHashes(film);
        const std::vector<std::size_t> bounds = {0, 30, 31, source.size()};
        const auto clips = CutAfterReading(film, {0, 30, 31}, Into(m_clips / name, container, encoder));
        for (std::size_t i = 0; i < clips.size(); ++i) {
            EXPECT_EQ(PictureHashes(clips[i].path),
                      std::vector(source.begin() + bounds[i], source.begin() + bounds[i + 1]));
            EXPECT_EQ(clips[i].frames, bounds[i + 1] - bounds[i]);
            double firstAudio = 1;
            for (const auto& [hash, place] : Packets(clips[i].path))
                if (!place.isVideo)
                    firstAudio = std::min(firstAudio, std::abs(place.seconds));
            EXPECT_LT(firstAudio, 0.045);
        }
    }
}

TEST_F(EncodedClips, KeepWhatTheStreamTells) {
    const auto film = Film(
        "a.mov",
        "-vf setsar=16/11,setfield=tff -c:v libx264 -flags +ildct -color_primaries bt470bg "
        "-color_trc gamma28 -colorspace bt470bg -color_range pc -chroma_sample_location topleft -c:a aac "
        "-timecode 10:00:00:00");
    RunFfmpeg({"-i", film, "-c", "copy", "-metadata:s:v", "rotate=90", m_folder / "film.mov"});
    const auto clips = CutAfterReading(m_folder / "film.mov", {0, 30}, Into(m_clips, "", "libx264"));
    const std::string told = OutputOf({"ffprobe", "-v", "error", "-show_streams", clips.at(1).path});
    for (const char* const line :
         {"sample_aspect_ratio=16:11", "color_range=pc", "color_space=bt470bg", "color_transfer=bt470bg",
          "color_primaries=bt470bg", "chroma_location=topleft", "field_order=tt", "r_frame_rate=25/1",
          "rotation=90", "timecode=10:00:01:05"})
        EXPECT_THAT(told, HasSubstr(line));
}

TEST_F(EncodedClips, RawDvHasItsFramesAndAudio) {
    RunFfmpeg(Words("-f lavfi -i testsrc2=s=720x576:r=25 -f lavfi -i anoisesrc=r=48000 -t 1 -target pal-dv " +
                    (m_folder / "tape.dv").native()));
    OutputClaims claims;
    std::string audio;
    std::vector<std::string> pictures;
    for (const WrittenClip& clip :
         CutWhileReading(m_folder / "tape.dv", {0, 5}, Into(m_clips, "", "ffv1"), claims)) {
        audio += Samples(clip.path);
        for (const std::string& picture : PictureHashes(clip.path))
            pictures.push_back(picture);
    }
    EXPECT_TRUE(audio == Samples(m_folder / "tape.dv"));
    EXPECT_EQ(pictures, PictureHashes(m_folder / "tape.dv"));
}

TEST_F(EncodedClips, MistakesAreToldBeforeAnythingIsRead) {
    const std::pair<const char*, const char*> faults[] = {
        {"libx264:crf=16:preset=slow", ""},
        {"h264", ""},
        {"nosuch:crf=16", "FFmpeg's libraries have no video encoder nosuch here"},
        {"aac", "FFmpeg's libraries have no video encoder aac here"},
        {"libx264:foo=1", "libx264 has no option foo"},
        {"libx264:crf=abc", "libx264: crf does not take abc"},
        {"libx264:crf", "options are NAME=VALUE with colons between: crf"}};
    for (const auto& [text, fault] : faults)
        EXPECT_EQ(EncodeFault(text), fault);
    const auto film = Film("a.mkv", "-c:v ffv1 -pix_fmt yuv422p10le -c:a pcm_s16le");
    const auto plan = [&](const std::string& container, const std::string& encoder) {
        return PlanClips(film.native(), Into(m_clips, container, encoder)).notes;
    };
    EXPECT_THAT(plan("", "mpeg4"),
                ElementsAre("pictures are converted from yuv422p10le to yuv420p for mpeg4"));
    EXPECT_THAT(MessageOf([&] { (void)plan("mp4", "libx264"); }),
                HasSubstr("mp4 cannot hold pcm_s16le; --container"));
    EXPECT_THAT(MessageOf([&] { (void)plan("", "libx264:profile=foo"); }),
                HasSubstr("libx264 cannot be opened for pictures of 160x120 with profile=foo"));
    EXPECT_THAT(MessageOf([&] {
                    RequireDvEncodable("a.dv", {"libx264", ""}, ContainerNamed("mp4"), true);
                }),
                HasSubstr("mp4 cannot hold pcm_s16le"));
}

} // namespace
