// How the program speaks, and what it takes from its configuration file.
#include "tests/Testing.h"
#include "tests/kxscenes/Material.h"

#include <sys/stat.h>

namespace {

ProcessSetup With(std::vector<std::pair<std::string, std::string>> environment) {
    ProcessSetup setup;
    setup.environment = std::move(environment);
    return setup;
}

// A tape of 60 frames, of which the last is cut short.
std::filesystem::path MakeCutTape(const TempFolder& folder) {
    const std::filesystem::path tape = folder / "tape.dv";
    MakeClip(DvClip("pal-dv", "2004-07-17T10:30:00", "00:00:10:00"), tape);
    std::filesystem::resize_file(tape, std::filesystem::file_size(tape) - 1000);
    return tape;
}

TEST(Messages, AreAsManyAsAskedFor) {
    const TempFolder folder;
    const std::string tape = MakeCutTape(folder);
    const auto warning = HasSubstr("kxscenes: warning: " + tape + ": ");
    EXPECT_THAT(Lines(RunHost({tape}).err), ElementsAre(warning));

    const ProcessResult quiet = RunHost({"--quiet", "--mark", "500", tape, folder / "missing.dv"});
    EXPECT_THAT(Lines(quiet.err),
                ElementsAre(HasSubstr("kxscenes: error: " + (folder / "missing.dv").string())));
    EXPECT_EQ(quiet.exitCode, 1);
    EXPECT_THAT(RunHost({"--quiet", "--timecode", tape}).err, "kxscenes: start timecode 00:00:10:00\n")
        << "an answer that was asked for";

    const ProcessResult verbose = RunHost({"--verbose", "--method", "video,timestamp", tape});
    EXPECT_THAT(Lines(verbose.err),
                ElementsAre("kxscenes: " + tape +
                                ": raw DV stream; 720x576 dvsd, 25 frames/s; filters: video, timestamp",
                            warning, MatchesRegex("kxscenes: .*: 59 frames in .* s, [0-9]+ frames/s")));
    EXPECT_EQ(verbose.out, RunHost({"--quiet", "--method", "video,timestamp", tape}).out);
}

TEST(Messages, NameTheReaderOfEveryKind) {
    const TempFolder folder;
    Clip clip;
    clip.rate = "30000/1001";
    clip.encoding = {"-c:v", "mpeg2video"};
    MakeClip(clip, folder / "clip.mkv");
    EXPECT_THAT(RunHost({"-v", folder / "clip.mkv"}).err,
                HasSubstr(": matroska,webm, decoded by mpeg2video; 320x240 YUY2, 30000/1001 frames/s; "));
    clip.encoding = {"-c:v", "rawvideo", "-pix_fmt", "bgr24"};
    MakeClip(clip, folder / "clip.avi");
    EXPECT_THAT(RunHost({"-v", folder / "clip.avi"}).err,
                HasSubstr(": avi, frames as they are; 320x240 RGB, 24 bits, "));
}

// Runs it on a terminal of 40 columns; gives what the terminal got.
std::string OnTerminal(const std::string& arguments, const ProcessSetup& setup = {}) {
    return Process({"script", "-qec", "stty cols 40; " + KxscenesProgram() + " " + arguments, "/dev/null"},
                   setup)
        .Wait()
        .out;
}

TEST(Messages, AreColouredOnATerminalOnly) {
    const TempFolder folder;
    const std::string missing = folder / "missing.dv";
    const std::string coloured = "kxscenes: \x1b[1;31merror: \x1b[0m" + missing;
    EXPECT_THAT(OnTerminal(missing, With({{"TERM", "xterm"}, {"NO_COLOR", ""}})), HasSubstr(coloured));
    EXPECT_THAT(OnTerminal(missing, With({{"TERM", "xterm"}, {"NO_COLOR", "1"}})), Not(HasSubstr("\x1b[1")));
    EXPECT_THAT(OnTerminal(missing, With({{"TERM", "dumb"}})), Not(HasSubstr("\x1b")));
    EXPECT_THAT(RunHost({missing}, With({{"TERM", "xterm"}})).err, Not(HasSubstr("\x1b")));
}

TEST(Messages, ProgressStaysOnItsLine) {
    const TempFolder folder;
    MakeClip(DvClip("pal-dv"), folder / "tape.dv");
    const auto start = [&folder](const std::string& kind) {
        const std::string pipe = folder / kind;
        EXPECT_EQ(mkfifo(pipe.c_str(), 0600), 0);
        return Process({"script", "-qec",
                        "stty cols 20; TERM=" + kind + " exec " + KxscenesProgram() + " --jobs 100 " + pipe +
                            ' ' + pipe + ".missing",
                        "/dev/null"});
    };
    Process dumb = start("dumb");
    Process terminal = start("xterm");
    // Tapes that come when one program has told that it waits for them.
    std::ofstream tapes[] = {std::ofstream(folder / "dumb"), std::ofstream(folder / "xterm")};
    while (terminal.OutputSoFar().find(" files  ") == std::string::npos)
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    for (std::ofstream& tape : tapes) {
        tape << ReadWhole(folder / "tape.dv");
        tape.close();
    }
    int count = 0;
    std::istringstream written(terminal.Wait().out);
    for (std::string line; std::getline(written, line, '\r');)
        if (const auto end = line.find("\x1b[K"); end != std::string::npos && line.find(" files  ") == 3) {
            EXPECT_LE(end, 19u) << line;
            ++count;
        }
    EXPECT_GT(count, 0);
    EXPECT_THAT(dumb.Wait().out, Not(HasSubstr("files  ")));
}

struct Configured {
    const char* name;
    std::string config;
    std::vector<std::string> arguments;
    const char* expected; // the frames of scenes, or a part of the message
};

class ConfigFile : public OneClip {
  protected:
    ProcessResult Run(const Configured& each) {
        WriteBytes(m_config, each.config);
        std::vector<std::string> arguments = each.arguments;
        arguments.push_back(m_file);
        return RunHost(arguments, With({{"XDG_CONFIG_HOME", m_folder / "home"}}));
    }

    void SetUp() override {
        OneClip::SetUp();
        std::filesystem::create_directories(m_config.parent_path());
    }

    std::filesystem::path m_config = m_folder / "home/kxscenes/kxscenes.conf";
};

TEST_F(ConfigFile, GivesWayToTheCommandLine) {
    const std::string other = m_folder / "other.conf";
    WriteBytes(other, "method = manual\nmark = 9\n");
    const std::string intervals = "# every second\nmethod = interval # mine\ninterval = 25\n";
    const std::vector<Configured> cases = {
        {"read", intervals, {}, "0 25 50 "},
        {"option by option", intervals, {"--interval", "40"}, "0 40 "},
        {"interval unused", intervals, {"--method", "video"}, "0 20 33 47 "},
        {"lists", "method=[manual,\n  interval]\nmark = [3, 7]\ninterval = 50", {}, "0 3 7 50 "},
        {"lists are replaced", "method = 'manual'\nmark = 3,7", {"--mark", "5"}, "0 5 "},
        {"another file", intervals, {"--config", other}, "0 9 "},
        {"no file", intervals, {"--no-config"}, "0 20 33 47 "},
        {"opposite", "quiet", {"--verbose"}, "0 20 33 47 "},
    };
    for (const Configured& each : cases) {
        const ProcessResult result = Run(each);
        std::string frames;
        for (const std::string& row : Lines(result.out))
            if (row.front() != 's')
                frames +=
                    row.substr(row.find(',') + 1, row.find(',', row.find(',') + 1) - row.find(',') - 1) + ' ';
        EXPECT_EQ(frames, each.expected) << each.name << ": " << result.err;
    }
    EXPECT_THAT(Run(cases.back()).err, HasSubstr("avi, frames as they are"));
}

TEST_F(ConfigFile, NamesHaveAnyLetters) {
    Run({"", "xml = \"" + (m_folder / "a #1, {name}.xml").string() + "\" # beside it", {}, ""});
    EXPECT_TRUE(std::filesystem::exists(m_folder / "a #1, clip.xml"));
}

TEST_F(ConfigFile, WrongOnesGetOneLineWithThePlace) {
    const std::string missing = m_folder / "missing.conf";
    const std::vector<Configured> cases = {
        {"unknown", "\n\nmethods = video", {}, "kxscenes.conf:3: no such setting: methods"},
        {"an input", "INPUT = a.dv", {}, "kxscenes.conf:1: no such setting: INPUT"},
        {"another file", "config = a", {}, "kxscenes.conf:1: no such setting: config"},
        {"no setting", "tape\n", {}, "kxscenes.conf:1: no such setting: tape"},
        {"section", "[general]\njobs = 1", {}, "there are no sections: [general]"},
        {"twice", "jobs = 1\njobs = 2", {}, "kxscenes.conf:2: jobs is set twice"},
        {"range", "# jobs\njobs = 0", {}, "kxscenes.conf:2: --jobs: "},
        {"no number", "interval = soon", {}, "kxscenes.conf:1: "},
        {"no word", "method = [video, guess]", {}, "no such method: guess"},
        {"flag", "quiet = maybe", {}, "kxscenes.conf:1: "},
        {"together", "quiet = true\nverbose = true", {}, "with the settings of "},
        {"missing", "", {"--config", missing}, "missing.conf: cannot be read: No such file"},
        {"folder", "", {"--config", m_folder / "home"}, "home: cannot be read: Is a directory"},
        {"nameless", "", {"--config", ""}, "a file name is empty"},
        {"both", "", {"--config", "a", "--no-config"}, "--no-config"},
    };
    for (const Configured& each : cases) {
        const ProcessResult result = Run(each);
        EXPECT_EQ(result.exitCode, 2) << each.name;
        EXPECT_EQ(result.out, "") << each.name;
        EXPECT_THAT(Lines(result.err),
                    ElementsAre(AllOf(StartsWith("kxscenes: error: "), HasSubstr(each.expected))))
            << each.name;
    }
}

} // namespace
