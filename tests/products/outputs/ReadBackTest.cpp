// Chapters, put into a file by ffmpeg.
#include "products/outputs/SceneWriters.h"
#include "tests/Testing.h"
#include "tests/kxscenes/Material.h"
#include "tests/products/outputs/Tables.h"

namespace {

std::vector<std::string> Probe(const std::string& file, const char* entries) {
    return Lines(
        Process({"ffprobe", "-v", "error", "-show_entries", entries, "-of", "default=nk=1:nw=1", file})
            .Wait()
            .out);
}

TEST(ReadBack, FfmpegTakesChapters) {
    const TempFolder folder;
    const std::string clip = folder / "clip.mkv";
    const std::string out = folder / "out.mkv";
    const std::string list = folder / "clip.list";
    MakeClip({"320x240", "30000/1001", {20, 33}, 60, {"-c:v", "mpeg4"}}, clip);
    SceneTable table = TableOf({30000, 1001}, {0, 20, 33, 60});
    table.name = kOddName;
    WriteBytes(list, MetadataChapters(table));
    RunFfmpeg({"-i", clip, "-i", list, "-map_metadata", "1", "-codec", "copy", out});
    EXPECT_THAT(Probe(out, "chapter=start_time:chapter_tags=title"),
                ElementsAre("0.000000", "Scene 1", "0.667333", "Scene 2", "1.101100", "Scene 3"));
    EXPECT_THAT(Probe(list, "format_tags=title"), ElementsAre(kPlainName));
}

} // namespace
