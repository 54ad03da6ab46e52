// Several methods in one pass, and several inputs in one run.
#include "tests/Testing.h"
#include "tests/kxscenes/Material.h"

namespace {

// Two captures of 60 frames, an hour apart, each with its picture cuts.
void MakeTape(const std::filesystem::path& target) {
    const TempFolder folder;
    MakeClip(DvClip("pal-dv"), folder / "a.dv");
    MakeClip(DvClip("pal-dv", "2004-07-17T11:30:00"), folder / "b.dv");
    WriteBytes(target, ReadWhole(folder / "a.dv") + ReadWhole(folder / "b.dv"));
}

TEST(SeveralMethods, EachSceneNamesThoseThatFoundIt) {
    const TempFolder folder;
    MakeTape(folder / "tape.dv");
    const ProcessResult result =
        RunHost({"--method", "timestamp", "--method", "video,interval", "--interval", "47", "--mark", "5",
                 "--xml", folder / "{name}-{method}.xml", folder / "tape.dv"});
    EXPECT_EQ(result.err, "");
    // The joint at 60 is a jump of the clock; whether it is a picture cut, too, "video" alone tells.
    std::vector<std::string> expected = {"scene,frame,timecode,seconds,method"};
    const auto video = Frames(RunHost({"--mark", "5", folder / "tape.dv"}));
    int number = 0;
    for (int frame = 0; frame < 120; ++frame) {
        std::string methods;
        if (frame == 0 || frame == 60 || frame == 5)
            methods += "timestamp+";
        if (std::find(video.begin(), video.end(), frame) != video.end())
            methods += "video+";
        if (frame % 47 == 0 || frame == 5)
            methods += "interval+";
        if (methods.empty())
            continue;
        methods.pop_back();
        char line[100];
        std::snprintf(line, sizeof line, "%d,%d,00:00:%02d:%02d,%d.%03d,%s", ++number, frame, frame / 25,
                      frame % 25, frame / 25, frame % 25 * 40, methods.c_str());
        expected.emplace_back(line);
    }
    EXPECT_EQ(Lines(result.out), expected);
    EXPECT_THAT(video, IsSupersetOf({0, 5, 20, 33, 47, 80, 93, 107}));
    EXPECT_THAT(ReadWhole(folder / "tape-timestamp.xml"), HasSubstr("count=\"3\" method=\"Timestamp\""));
    EXPECT_THAT(ReadWhole(folder / "tape-interval.xml"), HasSubstr("count=\"4\" method=\"Interval\""));
    EXPECT_THAT(ReadWhole(folder / "tape-video.xml"), HasSubstr("method=\"Video\""));
}

TEST(ManyInputs, PrintInOrderAndFailAlone) {
    const TempFolder folder;
    const auto tapes = folder / "tapes";
    std::filesystem::create_directories(tapes / "inner");
    MakeClip(DvClip("pal-dv"), tapes / "b,1.dv");
    MakeClip(DvClip("ntsc-dv"), tapes / "inner/c.DV");
    WriteBytes(tapes / "notes.txt", "no video");
    WriteBytes(tapes / ".part.dv", "of another program");
    WriteBytes(folder / "bad.avi", "RIFF and nothing behind");

    std::string expected = "file,scene,frame,timecode,seconds\n";
    for (const auto& [field, path] : {std::pair{'"' + (tapes / "b,1.dv").string() + '"', tapes / "b,1.dv"},
                                      std::pair{(tapes / "inner/c.DV").string(), tapes / "inner/c.DV"}})
        for (const std::string& row : Rows(RunHost({path})))
            expected += field + ',' + row + '\n';
    for (const char* jobs : {"1", "3"}) {
        const ProcessResult result = RunHost({"--jobs", jobs, folder / "bad.avi", tapes});
        EXPECT_EQ(result.exitCode, 1);
        EXPECT_EQ(result.out, expected);
        EXPECT_THAT(Lines(result.err),
                    AllOf(SizeIs(3), Contains(HasSubstr("3 files: 2 done, 1 failed; 8 scenes in 120 frames")),
                          Contains(EndsWith("failed: " + (folder / "bad.avi").string()))));
    }
    EXPECT_EQ(RunHost({tapes}).exitCode, 0);
}

TEST(ManyInputs, FoldersThatCannotBeReadCostALine) {
    const TempFolder folder;
    std::filesystem::create_directories(folder / "empty");
    std::filesystem::create_directories(folder / "tapes/locked");
    MakeClip(DvClip("pal-dv"), folder / "tapes/tape.dv");
    std::filesystem::permissions(folder / "tapes/locked", std::filesystem::perms::none);
    std::vector<std::string> command = {KxscenesProgram(),     "--no-config",    "--xml",
                                        folder / "{name}.xml", folder / "empty", folder / "tapes"};
    if (geteuid() == 0) // whom permissions do not keep out
        command.insert(command.begin(), {"setpriv", "--bounding-set", "-dac_override,-dac_read_search"});
    const ProcessResult result = Process(command).Wait();
    std::filesystem::permissions(folder / "tapes/locked", std::filesystem::perms::owner_all);
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(Lines(result.out).size(), 5u);
    EXPECT_TRUE(std::filesystem::exists(folder / "tape.xml"));
    const std::string error = "kxscenes: error: ";
    EXPECT_THAT(
        Lines(result.err),
        AllOf(SizeIs(5), Contains(error + (folder / "empty").string() + ": no video file in this folder"),
              Contains(error + (folder / "tapes/locked").string() + ": cannot be read: Permission denied"),
              Contains(HasSubstr("3 files: 1 done, 2 failed"))));
}

TEST(ManyInputs, MethodsThatDoNotTakeAFileAreSkippedThere) {
    const TempFolder folder;
    MakeTape(folder / "a.dv");
    Clip clip = DvClip("pal-dv");
    clip.encoding = Words("-c:v dvvideo -pix_fmt yuv411p -f rawvideo");
    MakeClip(clip, folder / "b.dv");
    MakeClip({}, folder / "c.mkv");
    const ProcessResult result =
        RunHost({"--method", "timestamp,video", "--jobs", "1", "--stats", folder / "{name}.csv", "--xml",
                 folder / "{name}-{method}.xml", folder / ""});
    EXPECT_EQ(result.exitCode, 0);
    const std::string warning = "kxscenes: warning: " + (folder / "").string();
    EXPECT_THAT(Lines(result.err),
                ElementsAre(AllOf(StartsWith(warning + "b.dv: --method video "), EndsWith(": skipped")),
                            AllOf(StartsWith(warning + "c.mkv: --method timestamp "), EndsWith(": skipped")),
                            HasSubstr("3 files: 3 done, 0 failed")));
    std::vector<std::string> expected = {"file,scene,frame,timecode,seconds,method"};
    for (const auto& [name, methods] :
         {std::pair{"a.dv", "timestamp,video"}, {"b.dv", "timestamp"}, {"c.mkv", "video"}})
        for (const std::string& line : Lines(RunHost({"--method", methods, folder / name}).out))
            if (!line.starts_with("scene,"))
                expected.push_back((folder / name).string() + ',' + line +
                                   (name[0] == 'a' ? "" : std::string(",") + methods));
    EXPECT_EQ(Lines(result.out), expected);
    EXPECT_THAT(FilesIn(folder / ""),
                ElementsAre("a-timestamp.xml", "a-video.xml", "a.csv", "a.dv", "b-timestamp.xml", "b.csv",
                            "b.dv", "c-video.xml", "c.csv", "c.mkv"));
}

} // namespace
