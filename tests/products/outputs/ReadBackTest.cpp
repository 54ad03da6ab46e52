// Lists that other programs take: chapters put into files by ffmpeg and mkvmerge, key frames set by x264.
#include "products/outputs/SceneWriters.h"
#include "tests/Testing.h"
#include "tests/kxscenes/Material.h"
#include "tests/products/outputs/Tables.h"

namespace {

// A clip of 60 frames, and how ffprobe sees what becomes of it.
class ReadBack : public Test {
  protected:
    void SetUp() override { MakeClip({"320x240", "30000/1001", {20, 33}, 60, {"-c:v", "mpeg4"}}, m_clip); }
    static std::vector<std::string> Probe(const std::string& file, const char* entries) {
        return Lines(Process({"ffprobe", "-v", "error", "-skip_frame", "nokey", "-show_entries", entries,
                              "-of", "default=nk=1:nw=1", file})
                         .Wait()
                         .out);
    }
    void ExpectChapters() const {
        EXPECT_THAT(Probe(m_out, "chapter=start_time:chapter_tags=title"),
                    ElementsAre("0.000000", "Scene 1", "0.667333", "Scene 2", "1.101100", "Scene 3"));
    }

    TempFolder m_folder;
    const std::string m_clip = m_folder / "clip.mkv";
    const std::string m_out = m_folder / "out.mkv";
    const std::string m_list = m_folder / "clip.list";
    SceneTable m_table = TableOf({30000, 1001}, {0, 20, 33, 60});
};

TEST_F(ReadBack, FfmpegTakesChapters) {
    m_table.name = kOddName;
    WriteBytes(m_list, MetadataChapters(m_table));
    RunFfmpeg({"-i", m_clip, "-i", m_list, "-map_metadata", "1", "-codec", "copy", m_out});
    ExpectChapters();
    EXPECT_THAT(Probe(m_list, "format_tags=title"), ElementsAre(kPlainName));
}

TEST_F(ReadBack, MkvmergeTakesChapters) {
    constexpr int kNotInstalled = 127;
    WriteBytes(m_list, MatroskaChapters(m_table));
    const int code = Process({"mkvmerge", "-o", m_out, "--chapters", m_list, m_clip}).Wait().exitCode;
    if (code == kNotInstalled)
        GTEST_SKIP();
    EXPECT_EQ(code, 0);
    ExpectChapters();
}

TEST_F(ReadBack, EncoderTakesKeyFrames) {
    constexpr int kNotInstalled = 127;
    const std::string pictures = m_folder / "clip.y4m";
    WriteBytes(m_list, QpFile(m_table));
    EXPECT_EQ(ReadWhole(m_list), "0 I -1\n20 I -1\n33 I -1\n");
    RunFfmpeg({"-r", "25", "-i", m_clip, pictures});
    if (Process({"x264", "--keyint", "infinite", "--no-scenecut", "--qpfile", m_list, "-o", m_out, pictures})
            .Wait()
            .exitCode == kNotInstalled)
        GTEST_SKIP();
    EXPECT_THAT(Probe(m_out, "frame=best_effort_timestamp_time"),
                ElementsAre("0.000000", "0.800000", "1.320000"));
}

} // namespace
