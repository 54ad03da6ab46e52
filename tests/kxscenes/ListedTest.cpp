// Scenes read from lists: what detecting made is made again, and what a person has changed is kept to.
#include "tests/Testing.h"
#include "tests/kxscenes/Material.h"

namespace {

struct Material {
    const char* name;
    Clip clip;
    std::string file;
    std::vector<std::string> options{}; ///< of the run that finds the scenes
    std::vector<std::string> lists{"list.csv", "list.json", "list.edl"};
};

Clip WithEncoding(Clip clip, const std::string& encoding) {
    clip.encoding = Words(encoding);
    return clip;
}

const Material kMaterials[] = {
    {"RawDv", DvClip("pal-dv", "2004-07-17T10:30:00", "01:02:03:04"), "a.dv"},
    {"PartOfNtscDv",
     DvClip("ntsc-dv", "2004-07-17T10:30:00", "00:59:59:20"),
     "a.dv",
     {"--start", "10", "--end", "50"}},
    {"DvInMatroska", DvClip("pal-dv"), "a.mkv"},
    {"DvWithDroppedFrames",
     WithEncoding(DvClip("pal-dv"),
                  "-vf select=not(between(n\\,5\\,6)+eq(n\\,40)) -vsync passthrough -c:v dvvideo "
                  "-pix_fmt yuv420p"),
     "a.avi"},
    {"H264WithTimecode", WithEncoding({}, "-c:v libx264 -preset veryfast -g 12 -bf 2 -timecode 10:00:00:00"),
     "a.mov"},
    {"VariableRate",
     WithEncoding(
         {}, "-vf setpts='if(lt(N,30),N/25,1.2+(N-30)/10)/TB' -vsync vfr -enc_time_base 1/1000 -c:v libx264 "
             "-preset veryfast"),
     "a.mkv",
     {"--container", "mp4"},      // Matroska's files each bear a number of their own
     {"list.csv", "list.json"}}}; // an EDL tells no variable rate

class ListedRun : public TestWithParam<Material> {
  protected:
    /// Runs with all outputs into this folder.
    ProcessResult Run(const std::string& into, const std::vector<std::string>& options) {
        std::vector<std::string> arguments = options;
        for (const std::string& list : GetParam().lists)
            arguments.insert(arguments.end(), {"-o", m_folder / into / list});
        arguments.insert(arguments.end(), {"--split", m_folder / into / "clips", m_input});
        return RunHost(arguments);
    }

    TempFolder m_folder;
    std::filesystem::path m_input = m_folder / GetParam().file;
};

TEST_P(ListedRun, MakesTheSameAgain) {
    MakeClip(GetParam().clip, m_input);
    ASSERT_EQ(Run("found", GetParam().options).exitCode, 0);
    const auto clips = FilesIn(m_folder / "found/clips");
    ASSERT_THAT(clips, SizeIs(Ge(3u)));
    for (const std::string& list : GetParam().lists) {
        std::vector<std::string> options = GetParam().options;
        options.insert(options.end(), {"--scenes", m_folder / "found" / list});
        const ProcessResult again = Run("again " + list, options);
        EXPECT_EQ(again.exitCode, 0) << again.err;
        const auto isSame = [&](const std::filesystem::path& name) {
            return ReadWhole(m_folder / ("again " + list) / name) == ReadWhole(m_folder / "found" / name);
        };
        for (const std::string& same : GetParam().lists) // an EDL does not tell what found a scene
            EXPECT_TRUE(isSame(same) || (list == "list.edl" && same != list)) << list << " to " << same;
        ASSERT_EQ(FilesIn(m_folder / ("again " + list) / "clips"), clips);
        for (const std::string& clip : clips)
            EXPECT_TRUE(isSame("clips/" + clip)) << list << ' ' << clip;
    }
}

INSTANTIATE_TEST_SUITE_P(All, ListedRun, ValuesIn(kMaterials), kByName);

class CorrectedList : public Test {
  protected:
    void SetUp() override { MakeClip(DvClip("pal-dv"), m_tape); }

    TempFolder m_folder;
    std::filesystem::path m_tape = m_folder / "tape.dv";
    std::filesystem::path m_list = m_folder / "tape.txt";
};

TEST_F(CorrectedList, MakesClipsAndPicturesOfItsSpansOnly) {
    WriteBytes(m_list, "Start Frame,End Frame,Name\n6,12,one\n20,33,\"two, longer\"\n48,60,\n");
    for (const std::string file : {"tape.dv", "tape.mp4"}) {
        if (file == "tape.mp4")
            MakeClip(WithEncoding({}, "-c:v libx264 -preset veryfast -g 1"), m_folder / file);
        const auto into = m_folder / (file + " made");
        const ProcessResult result = RunHost({"--scenes", m_folder / "{name}.txt", "--split", into / "clips",
                                              "--pictures", into / "stills", "--picture-at", "end", "--names",
                                              "{frame}", "-o", into / "list.csv", m_folder / file});
        EXPECT_THAT(Lines(result.err), ElementsAre(HasSubstr("26 frames lie in no scene of")));
        EXPECT_EQ(Frames(result), (std::vector<std::int64_t>{5, 19, 47}));
        EXPECT_THAT(FilesIn(into / "stills"), ElementsAre("0000011.png", "0000032.png", "0000059.png"));
        EXPECT_THAT(Lines(ReadWhole(into / "list.csv")), Contains(StartsWith("1,6,00:00:00.200,0.200,12,")));
        std::vector<std::string> frames;
        for (const std::string& clip : FilesIn(into / "clips"))
            frames.push_back(Lines(
                Process({"ffprobe", "-v", "error", "-count_packets", "-select_streams", "v:0",
                         "-show_entries", "stream=nb_read_packets", "-of", "csv=p=0", into / "clips" / clip})
                    .Wait()
                    .out)[0]);
        EXPECT_THAT(frames, ElementsAre("7", "14", "13")) << file;
    }
    const std::string tape = ReadWhole(m_tape);
    EXPECT_EQ(ReadWhole(m_folder / "tape.dv made/clips/0000019.dv"), tape.substr(19 * 144'000, 14 * 144'000));
}

TEST_F(CorrectedList, ThatIsWrongLeavesNothingHalfDone) {
    WriteBytes(m_list, "0\n20\n60\n");
    const auto split = m_folder / "clips";
    const struct {
        std::vector<std::string> arguments;
        int exitCode;
        const char* message;
    } cases[] = {{{"--split", split, m_tape}, 1, "tape.txt, line 3: lies beyond the end of the file"},
                 {{"--mark", "7", m_tape}, 2, "no option of finding scenes"},
                 {{m_tape, m_tape}, 1, "{name} in --scenes"},
                 {{"-o", m_list, "--format", "csv", m_tape}, 1, "tape.txt"}};
    for (const auto& each : cases) {
        std::vector<std::string> arguments = each.arguments;
        arguments.insert(arguments.end(), {"--scenes", m_list});
        const ProcessResult result = RunHost(arguments);
        EXPECT_EQ(result.exitCode, each.exitCode) << result.err;
        EXPECT_THAT(Lines(result.err), ElementsAre(HasSubstr(each.message)));
    }
    EXPECT_FALSE(exists(split));
    EXPECT_EQ(ReadWhole(m_list), "0\n20\n60\n");
}

} // namespace
