// How a run ends, and what it leaves then: whole files, partial ones that say so, or what was there before.
#include "tests/Testing.h"
#include "tests/kxscenes/Material.h"

#include <csignal>
#include <nlohmann/json.hpp>
#include <sys/stat.h>

namespace {

using Arguments = std::vector<std::string>;

constexpr const char* kHeader = "scene,frame,timecode,seconds\n";

/// A tape of 60 frames with scenes at 0, 20, 33 and 47.
class Ending : public Test {
  protected:
    void SetUp() override { MakeClip(DvClip("pal-dv"), m_tape); }

    /// All the files that a run writes once it knows its scenes.
    [[nodiscard]] Arguments Files() const {
        Arguments files;
        for (const auto& [option, name] : kFiles)
            files.insert(files.end(), {option, m_folder / name});
        return files;
    }
    [[nodiscard]] ProcessResult Run(Arguments arguments, const std::string& input) const {
        arguments.push_back(input);
        return RunHost(arguments);
    }
    /// With shell commands before it: "$0" is the program.
    static ProcessResult RunShell(const std::string& script, Arguments arguments) {
        arguments.insert(arguments.begin(), {"bash", "-c", script, KxscenesProgram()});
        return Process(arguments).Wait();
    }

    static constexpr std::pair<const char*, const char*> kFiles[] = {{"-o", "list.json"},
                                                                     {"--tape-log", "log.csv"},
                                                                     {"--report", "report.html"},
                                                                     {"--stats", "stats.csv"},
                                                                     {"--xml", "list.xml"}};

    TempFolder m_folder;
    const std::filesystem::path m_tape = m_folder / "tape.dv";
};

// Two clips of ten frames have room, the third has not: of a part of the input nothing gets a name, and
// nothing is replaced.
TEST_F(Ending, AnErrorLeavesWholeClipsAndOlderFiles) {
    for (const auto& [option, name] : kFiles)
        WriteBytes(m_folder / name, "older");
    Arguments arguments = Files();
    arguments.insert(arguments.end(), {"--mark", "10", "--split", m_folder / "clips", m_tape});
    const ProcessResult result = RunShell("ulimit -f 1500; exec \"$0\" \"$@\"", arguments);
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_THAT(
        Lines(result.err),
        ElementsAre(AllOf(HasSubstr("tape-0003.dv: cannot be written: File too large"),
                          HasSubstr("; written: 2 clips in "), HasSubstr("; not written: "),
                          HasSubstr("the other clips in "), HasSubstr("list.json"), HasSubstr("log.csv"),
                          HasSubstr("report.html"), HasSubstr("stats.csv"), HasSubstr("list.xml"))));
    EXPECT_THAT(FilesIn(m_folder / "clips"), ElementsAre("tape-0001.dv", "tape-0002.dv"));
    EXPECT_EQ(ReadWhole(m_folder / "clips/tape-0002.dv").size(), 10u * 144'000);
    for (const auto& [option, name] : kFiles)
        EXPECT_EQ(ReadWhole(m_folder / name), "older");
}

TEST_F(Ending, AnInputThatEndsEarlyGivesPartialFiles) {
    std::filesystem::resize_file(m_tape, 59 * 144'000 + 99'999);
    const ProcessResult result = Run(Files(), m_tape);
    EXPECT_EQ(result.exitCode, 3);
    EXPECT_THAT(Lines(result.err),
                ElementsAre(HasSubstr("inside frame 59"),
                            AllOf(HasSubstr("warning: of the first 59 frames only: "), HasSubstr("list.xml"),
                                  HasSubstr("list.json"), HasSubstr("stats.csv"))));
    const auto list = nlohmann::json::parse(ReadWhole(m_folder / "list.json"));
    EXPECT_EQ(list.at("partial"), "input breaks off");
    EXPECT_EQ(list.at("frame_count"), 59);
    EXPECT_THAT(ReadWhole(m_folder / "report.html"), HasSubstr("\"partial\":\"input breaks off\""));

    // What lies before the cut is whole, and so is the whole tape.
    EXPECT_EQ(RunHost({"--end", "50", m_tape}).exitCode, 0);
    const ProcessResult many = RunHost({m_tape, m_tape, m_folder / "none.dv"});
    EXPECT_EQ(many.exitCode, 1) << "one has failed";
    EXPECT_THAT(many.err, HasSubstr("3 files: 0 done, 2 partial, 1 failed; "));
    EXPECT_EQ(RunHost({m_tape, m_tape}).exitCode, 3);
}

// The second input is a pipe that nobody writes: one signal ends the wait for it.
TEST_F(Ending, APipeWithoutAWriterIsLeftAtTheFirstSignal) {
    const auto pipe = m_folder / "pipe.dv";
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    Process host({KxscenesProgram(), "--jobs", "1", m_tape, pipe});
    while (Lines(host.OutputSoFar()).size() < 5)
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    host.Signal(SIGINT);
    const ProcessResult result = host.Wait();
    EXPECT_EQ(result.exitCode, 130);
    EXPECT_THAT(result.err, Not(HasSubstr("error")));
}

// Before the run: a pipe that has lost its reader, as standard output.
TEST_F(Ending, NobodyReadsTheStandardOutput) {
    const std::string unread = "mkfifo \"$1\"; exec 3<>\"$1\" 4>\"$1\" 3>&-; shift; exec \"$0\" \"$@\" >&4";
    const struct {
        const char* name;
        Arguments arguments;
        int exitCode;
    } cases[] = {{"Scenes", {}, 141},
                 {"List", {"-o", "-", "--format", "csv"}, 141},
                 {"ScenesBesideAList", {"-o", m_folder / "list.csv"}, 0}};
    for (const auto& each : cases) {
        Arguments arguments = {m_folder / each.name};
        arguments.insert(arguments.end(), each.arguments.begin(), each.arguments.end());
        arguments.push_back(m_tape);
        const ProcessResult result = RunShell(unread, arguments);
        EXPECT_EQ(result.exitCode, each.exitCode) << each.name;
        EXPECT_EQ(result.err, "") << each.name;
    }
    EXPECT_THAT(Lines(ReadWhole(m_folder / "list.csv")), SizeIs(5));
}

// Not with sanitizers, which reserve more than any limit.
TEST_F(Ending, ThreadsThatDoNotStartAreDoneWithout) {
    Arguments arguments = {"--jobs", "64", "--method", "interval", "--interval", "50"};
    arguments.insert(arguments.end(), 64, m_tape);
    // What fails for lack of memory after it has begun is told like any other failure.
    const ProcessResult result = RunShell("ulimit -v 400000; exec \"$0\" \"$@\"", arguments);
    int done = 0;
    int failed = 0;
    const std::size_t at = result.err.find("64 files: ");
    ASSERT_NE(at, std::string::npos) << result.err;
    ASSERT_EQ(std::sscanf(result.err.c_str() + at, "64 files: %d done, %d failed", &done, &failed), 2)
        << result.err;
    EXPECT_EQ(done + failed, 64) << result.err;
    EXPECT_GE(done, 2) << result.err; // threads that have started, and none that has not
    EXPECT_EQ(result.exitCode, failed == 0 ? 0 : 1);
}

// --- one run tells one story ---

TEST_F(Ending, ShortScenesBelongToTheOneBeforeEverywhere) {
    // Those from 20 to 33 and from 47 to 60 have 13 frames.
    const ProcessResult result =
        Run({"--min-scene", "14", "--split", m_folder / "clips", "--pictures", m_folder / "stills", "-o",
             m_folder / "list.csv", "--xml", m_folder / "list.xml"},
            m_tape);
    EXPECT_THAT(Frames(result), ElementsAre(0, 33));
    EXPECT_EQ(ReadWhole(m_folder / "clips/tape-0001.dv").size(), 33u * 144'000);
    EXPECT_EQ(ReadWhole(m_folder / "clips/tape-0001.dv") + ReadWhole(m_folder / "clips/tape-0002.dv"),
              ReadWhole(m_tape));
    EXPECT_THAT(FilesIn(m_folder / "stills"), ElementsAre("tape-0001.png", "tape-0002.png"));
    EXPECT_THAT(Lines(ReadWhole(m_folder / "list.csv")),
                ElementsAre(StartsWith("Scene Number,"), StartsWith("1,1,"), StartsWith("2,34,")));
    EXPECT_THAT(Lines(result.err), ElementsAre(HasSubstr("list.xml has the 4 scenes that the filter found")));
}

TEST_F(Ending, DroppedScenesAreInNoOutput) {
    const Arguments rules = {"--min-scene", "0.56s", "--short-scenes", "drop"}; // 14 frames
    Arguments arguments = {"--split", m_folder / "clips",    "-o", m_folder / "list.json",
                           "--stats", m_folder / "stats.csv"};
    arguments.insert(arguments.end(), rules.begin(), rules.end());
    const ProcessResult result = Run(arguments, m_tape);
    EXPECT_THAT(Frames(result), ElementsAre(0, 33));
    EXPECT_THAT(Lines(result.err),
                ElementsAre(HasSubstr("2 of 4 scenes are shorter than --min-scene: their 26 frames")));
    const std::string tape = ReadWhole(m_tape);
    EXPECT_THAT(FilesIn(m_folder / "clips"), ElementsAre("tape-0001.dv", "tape-0002.dv"));
    EXPECT_TRUE(ReadWhole(m_folder / "clips/tape-0001.dv") == tape.substr(0, 20u * 144'000));
    EXPECT_TRUE(ReadWhole(m_folder / "clips/tape-0002.dv") == tape.substr(33u * 144'000, 14u * 144'000));

    arguments = {"--from-stats", m_folder / "stats.csv", "-o", m_folder / "again.json"};
    arguments.insert(arguments.end(), rules.begin(), rules.end());
    EXPECT_EQ(RunHost(arguments).out, result.out);
    for (const char* list : {"list.json", "again.json"}) {
        const auto scenes = nlohmann::json::parse(ReadWhole(m_folder / list)).at("scenes");
        EXPECT_EQ(scenes.at(0).at("end").at("frame"), 20) << list;
        EXPECT_EQ(scenes.at(1).at("end").at("frame"), 47) << list;
    }

    // Also the first, whose frames no clip has until it is known.
    arguments = {"--start", "10", "--split", m_folder / "later"};
    arguments.insert(arguments.end(), rules.begin(), rules.end());
    EXPECT_THAT(Frames(Run(arguments, m_tape)), ElementsAre(33));
    EXPECT_TRUE(ReadWhole(m_folder / "later/tape-0001.dv") == tape.substr(33u * 144'000, 14u * 144'000));
}

// --- outputs ---

TEST_F(Ending, TheStandardOutputIsForOneOutput) {
    const struct {
        Arguments arguments;
        const char* begin; // of the standard output
        const char* error;
    } cases[] = {{{"-o", "-", "--format", "qp", m_tape}, "0 I -1\n", ""},
                 {{"--xml", "-", m_tape}, "<SceneList count=\"4\" method=\"Video\">\r\n", ""},
                 {{"--report", "-", m_tape}, "<!DOCTYPE html>", ""},
                 {{"--stats", "-", m_tape}, "frame,difference,level", ""},
                 {{"--tape-log", "-", m_tape}, "frame,byte_offset,", ""},
                 {{"-o", "-", "--format", "qp", "--stats", "/dev/stdout", m_tape}, "", "only one output"},
                 {{"--xml", "-", m_tape, m_tape}, "", "only one output"},
                 {{"--split", "-", m_tape}, "", "one of that name is ./-"}};
    for (const auto& each : cases) {
        const ProcessResult result = RunHost(each.arguments);
        EXPECT_THAT(result.out, StartsWith(each.begin));
        EXPECT_THAT(result.out, Not(HasSubstr(kHeader))) << each.arguments[0];
        EXPECT_THAT(result.err, HasSubstr(each.error)) << each.arguments[0];
        EXPECT_EQ(result.out.empty(), *each.error != '\0') << result.err;
    }
}

// What can be known before the input is read is told before, and nothing is written.
TEST_F(Ending, WrongOutputsAreRefusedBeforeReading) {
    WriteBytes(m_folder / "run.conf", "jobs = 1\n");
    Clip clip;
    clip.encoding = {"-c:v", "mpeg2video", "-g", "5"};
    const auto film = m_folder / "film.mkv";
    MakeClip(clip, film);
    for (const char* name : {"there", "empty"})
        std::filesystem::create_directory(m_folder / name);
    for (const char* name : {"film-0001.mkv", "film-0001.png"})
        WriteBytes(m_folder / "there" / name, "mine");
    const std::string there = m_folder / "there";
    const struct {
        Arguments arguments;
        const char* error;
    } cases[] = {
        {{"-o", m_folder / "zz.csv", "--stats", m_folder / "./zz.csv", m_tape}, "written twice"},
        {{"--config", m_folder / "run.conf", "-o", m_folder / "run.conf", "--format", "csv", m_tape},
         "would be overwritten"},
        {{"--xml", m_folder / "l.xml", "--method", "video,timestamp", m_tape}, "would be written twice"},
        {{m_folder / "empty"}, "no video file"},
        {{"--duration", "0", m_tape}, "no frame lies in the part"},
        {{"--start", "00:00:00:25", m_tape}, "the last frame of a second is 24"},
        {{"--pictures", there, "--picture-at", "start,start", m_tape}, "--picture-at start is given twice"},
        {{"-o", m_folder / "x.fcpxml", "-"}, "fcpxml has to point to a file"},
        {{"--split", there, film}, "film-0001.mkv: exists already; --force overwrites it"},
        {{"--pictures", there, film}, "film-0001.png: exists already; --force overwrites it"},
        {{"-o", m_folder / (std::string(260, 'x') + ".csv"), m_tape}, "255 bytes at the most"}};
    const auto before = FilesIn(m_folder / "");
    for (const auto& each : cases) {
        const ProcessResult result = RunHost(each.arguments);
        EXPECT_NE(result.exitCode, 0) << each.error;
        EXPECT_THAT(Frames(result), SizeIs(Le(1u))) << each.error;
        EXPECT_THAT(Lines(result.err), ElementsAre(HasSubstr(each.error)));
        EXPECT_EQ(FilesIn(m_folder / ""), before) << each.error;
    }
    EXPECT_EQ(ReadWhole(m_folder / "run.conf"), "jobs = 1\n");
}

} // namespace
