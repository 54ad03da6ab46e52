// What kxscenes makes of scenes besides printing them: clips, pictures, report, figures, parts of a file.
#include "tests/Testing.h"
#include "tests/kxscenes/Material.h"

#include <nlohmann/json.hpp>
#include <sys/stat.h>

namespace {

class Tape : public Test {
  protected:
    void SetUp() override { MakeClip(DvClip("pal-dv", "2004-07-17T10:30:00", "01:02:03:04"), m_tape); }

    TempFolder m_folder;
    std::filesystem::path m_tape = m_folder / "tape.dv";
};

TEST_F(Tape, ClipsOfAllMethodsGiveTheTapeAgain) {
    const auto clips = m_folder / "new/clips";
    const std::vector<std::string> split = {"--method",   "interval,video",
                                            "--interval", "33",
                                            "--split",    clips,
                                            "--names",    "{name}-{scene} {date} {time} {timecode} {method}",
                                            m_tape};
    EXPECT_EQ(RunHost(split).err, "");
    EXPECT_THAT(FilesIn(clips), ElementsAre("tape-0001 2004-07-17 10-30-00 01-02-03-04 interval+video.dv",
                                            "tape-0002 2004-07-17 10-30-00 01-02-03-24 video.dv",
                                            "tape-0003 2004-07-17 10-30-01 01-02-04-12 interval+video.dv",
                                            "tape-0004 2004-07-17 10-30-01 01-02-05-01 video.dv"));
    std::string joined;
    for (const std::string& name : FilesIn(clips))
        joined += ReadWhole(clips / name);
    EXPECT_EQ(joined, ReadWhole(m_tape));

    // A second run keeps what is there, unless it is told to overwrite.
    WriteBytes(clips / FilesIn(clips)[0], "mine");
    const ProcessResult again = RunHost(split);
    EXPECT_EQ(again.exitCode, 1);
    EXPECT_THAT(Lines(again.err), ElementsAre(HasSubstr("--force")));
    EXPECT_EQ(ReadWhole(clips / FilesIn(clips)[0]), "mine");
    auto forced = split;
    forced.emplace_back("--force");
    EXPECT_EQ(RunHost(forced).exitCode, 0);
    EXPECT_EQ(ReadWhole(clips / FilesIn(clips)[0]).size(), 20u * 144'000);
}

TEST_F(Tape, AnotherOutputFailsAloneAndTheRestIsWhole) {
    const ProcessResult result = RunHost(
        {"-o", "/dev/full", "--format", "json", "-o", m_folder / "list.csv", "--format", "csv", m_tape});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_THAT(Lines(result.err), ElementsAre(AllOf(HasSubstr("/dev/full"), HasSubstr("No space"))));
    EXPECT_THAT(Lines(ReadWhole(m_folder / "list.csv")), SizeIs(5));
    EXPECT_THAT(FilesIn(m_folder / ""), ElementsAre("list.csv", "tape.dv"));
}

TEST_F(Tape, LogAndReport) {
    WriteBytes(m_folder / "long.dv", ReadWhole(m_tape) + ReadWhole(m_tape));
    EXPECT_EQ(RunHost({"--tape-log", m_folder / "{name}.json", "--report", m_folder / "r.html", "--method",
                       "timestamp", m_folder / "long.dv"})
                  .err,
              "");
    const auto log = nlohmann::json::parse(ReadWhole(m_folder / "long.json"));
    EXPECT_THAT(log.dump(), HasSubstr("recording break"));
    const std::string page = ReadWhole(m_folder / "r.html");
    EXPECT_THAT(page, AllOf(HasSubstr("<title>long: scenes</title>"), HasSubstr("data:image/jpeg;base64,"),
                            Not(HasSubstr("://"))));
    EXPECT_EQ(RunHost({"--tape-log", m_folder / "log.csv", m_folder / "r.html"}).exitCode, 1);
}

TEST_F(Tape, ListsTellWhatTheTapeKnows) {
    const auto list = [this](const char* suffix) { return m_folder / ("list." + std::string(suffix)); };
    RunHost({"-o", list("csv"), "-o", list("json"), "-o", list("srt"), "--report", list("html"), m_tape});
    const std::string facts = "01:02:03:24,2004-07-17,10:30:00,4:3,";
    EXPECT_THAT(Lines(ReadWhole(list("csv"))), Contains(HasSubstr(",video,01:02:03:24," + facts)));
    EXPECT_EQ(nlohmann::json::parse(ReadWhole(list("json"))).at("scenes").at(1).at("tape"),
              nlohmann::json::parse(R"({"timecode": "01:02:03:24", "recording_date": "2004-07-17",
        "recording_time": "10:30:00", "aspect": "4:3"})"));
    EXPECT_THAT(ReadWhole(list("html")), HasSubstr("\"recording_time\":\"10:30:00\",\"aspect\":\"4:3\""));
    EXPECT_EQ(ReadWhole(list("srt")), "1\r\n00:00:00,000 --> 00:00:01,000\r\n2004-07-17 10:30:00\r\n\r\n"
                                      "2\r\n00:00:01,000 --> 00:00:02,000\r\n2004-07-17 10:30:01\r\n\r\n"
                                      "3\r\n00:00:02,000 --> 00:00:02,400\r\n2004-07-17 10:30:02\r\n\r\n");
    MakeClip({}, m_folder / "film.mkv");
    const ProcessResult film = RunHost({"-o", list("srt"), m_folder / "film.mkv"});
    EXPECT_EQ(film.exitCode, 1);
    EXPECT_THAT(Lines(film.err), ElementsAre(HasSubstr("need DV")));
}

TEST_F(Tape, ParametersAreFittedToAList) {
    const auto figures = m_folder / "figures.csv";
    const auto list = m_folder / "list.csv";
    RunHost({"--stats", figures, m_tape});
    const ProcessResult wanted = RunHost({"--from-stats", figures, "--cut-threshold", "60", "-o", list});
    const ProcessResult fitted = RunHost({"--fit", list, "--from-stats", figures});
    EXPECT_EQ(fitted.out, wanted.out);
    EXPECT_THAT(Lines(fitted.err),
                ElementsAre(AllOf(HasSubstr(" gives all of your "), HasSubstr(" and no other")),
                            AllOf(HasSubstr("kxscenes: kxscenes "), HasSubstr(m_tape.string()))));
    EXPECT_EQ(RunHost({"--fit", list, m_tape}).exitCode, 2);
}

// Positions are those of the file, wherever a run begins and ends.
TEST_F(Tape, PartsOfAFile) {
    const struct {
        std::vector<std::string> range;
        std::vector<std::int64_t> frames;
    } cases[] = {{{"--start", "10"}, {10, 20, 33, 47}},
                 {{"--start", "0.4s", "--end", "00:00:01.600"}, {10, 20, 33}},
                 {{"--start", "00:00:00:21", "--duration", "20"}, {21, 33}},
                 {{"--end", "20"}, {0}}};
    for (const auto& each : cases) {
        std::vector<std::string> arguments = each.range;
        arguments.insert(arguments.end(), {"--xml", m_folder / "list.xml", m_tape});
        EXPECT_EQ(Frames(RunHost(arguments)), each.frames) << each.range[1];
        std::string list;
        for (const std::int64_t frame : each.frames)
            list += "<Scene pos=\"" + std::to_string(frame) + "\"/>\r\n";
        EXPECT_THAT(ReadWhole(m_folder / "list.xml"), HasSubstr(">\r\n" + list + "</SceneList>"));
    }
}

// The mean of the squared differences of a picture and each of the frames `first` to `last` of a film, as the
// ffmpeg program shows them.
std::vector<double> Distances(const std::filesystem::path& picture, const std::filesystem::path& film,
                              int first, int last) {
    const std::string shown = "[1]select=between(n\\," + std::to_string(first) + "\\," +
                              std::to_string(last) +
                              "),scale=iw*sar:ih:flags=bicubic+accurate_rnd+full_chroma_int,format=rgb24,"
                              "setpts=N/TB[b];[0]format=rgb24[a];[a][b]psnr=f=-";
    const ProcessResult result = Process({"sh", "-c",
                                          "ffmpeg -v error -loop 1 -framerate 1 -i \"$0\" -i \"$1\" -lavfi "
                                          "\"$2\" -frames:v \"$3\" -f null - "
                                          "| sed 's/.*mse_avg:\\([0-9.]*\\).*/\\1/'",
                                          picture, film, shown, std::to_string(last - first + 1)})
                                     .Wait();
    EXPECT_EQ(result.exitCode, 0) << result.err;
    std::vector<double> distances;
    for (const std::string& line : Lines(result.out))
        distances.push_back(std::stod(line));
    distances.resize(static_cast<std::size_t>(last - first + 1));
    return distances;
}

class Pictures : public TestWithParam<std::vector<std::string>> {};

// Every frame of this material differs from its neighbours, so that a frame too early or late would be seen.
TEST_P(Pictures, AreThoseOfTheirFrames) {
    const TempFolder folder;
    const auto file = folder / GetParam()[0];
    std::vector<std::string> make = {
        "-f", "lavfi", "-i",
        "testsrc2=s=352x288:r=25:d=1.2[a];mandelbrot=s=352x288:r=25,trim=duration=1[b];"
        "[a][b]concat"};
    make.insert(make.end(), GetParam().begin() + 1, GetParam().end());
    make.push_back(file);
    RunFfmpeg(make);
    const ProcessResult run =
        RunHost({"--pictures", folder / "pictures", "--picture-at", "start,middle,end,3", file});
    ASSERT_EQ(Frames(run), (std::vector<std::int64_t>{0, 30})) << run.err;
    const struct {
        const char* name;
        int frame;
    } cases[] = {
        {"-0001-middle", 15}, {"-0001-end", 29}, {"-0002-start", 30}, {"-0002-3", 33}, {"-0002-end", 54}};
    for (const auto& each : cases) {
        const auto picture = folder / "pictures" / (file.stem().string() + each.name + ".png");
        const auto distances = Distances(picture, file, each.frame - 1, std::min(each.frame + 1, 54));
        EXPECT_LT(distances[1], 2) << each.name;
        EXPECT_LT(distances[1] * 2, distances.front()) << each.name;
        if (each.frame < 54) {
            EXPECT_LT(distances[1] * 2, distances.back()) << each.name;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(
    Kinds, Pictures,
    Values(std::vector<std::string>{"raw.dv", "-target", "pal-dv"},
           std::vector<std::string>{"dv.mov", "-c:v", "dvvideo", "-s", "720x576", "-pix_fmt", "yuv420p"},
           std::vector<std::string>{"h264.mp4", "-c:v", "libx264", "-bf", "3", "-g", "12"},
           std::vector<std::string>{"mpeg2.ts", "-c:v", "mpeg2video", "-bf", "2", "-q:v", "3"},
           // Stamps are missing: of the last picture, of all.
           std::vector<std::string>{"mpeg2.mpg", "-c:v", "mpeg2video", "-bf", "2", "-q:v", "3"},
           std::vector<std::string>{"bare.h264", "-c:v", "libx264", "-bf", "3", "-g", "12"},
           std::vector<std::string>{"mjpeg.avi", "-c:v", "mjpeg", "-q:v", "2"}),
    [](const auto& each) {
        std::string name = each.param[0];
        std::ranges::replace(name, '.', '_');
        return name;
    });

// The pictures begin a second after the audio, and have timecode.
TEST(LateVideo, NamesTellTheSourcesTimecodeAndTheirOwnFrameAndChaptersStartLate) {
    const TempFolder folder;
    RunFfmpeg({"-itsoffset", "1", "-f", "lavfi", "-i", "testsrc2=s=64x48:r=25:d=0.8", "-f", "lavfi", "-i",
               "anoisesrc=r=48000:d=2:seed=7", "-c:v", "mjpeg", "-c:a", "pcm_s16le", "-metadata:s:v:0",
               "timecode=01:00:00:00", folder / "film.mkv"});
    const ProcessResult run = RunHost(
        {"--method", "manual", "--mark", "10", "--pictures", folder / "pictures", "--picture-at", "middle",
         "--names", "{frame}_{timecode}", "-o", folder / "film.ffmeta", folder / "film.mkv"});
    EXPECT_EQ(run.exitCode, 0) << run.err;
    for (const char* name : {"0000005_01-00-00-00.png", "0000015_01-00-00-10.png"})
        EXPECT_TRUE(std::filesystem::exists(folder / "pictures" / name)) << name;
    EXPECT_THAT(ReadWhole(folder / "film.ffmeta"),
                AllOf(HasSubstr("START=1000000\nEND=1400000\n"), HasSubstr("START=1400000\nEND=1800000\n")));
}

// Where recordings were joined, every stamp may come twice.
TEST(JoinedStreams, PicturesAreThoseOfTheirPart) {
    const TempFolder folder;
    std::string joined;
    for (const std::string seed : {"1", "2"}) {
        const auto part = folder / (seed + ".ts");
        RunFfmpeg({"-f", "lavfi", "-i", "testsrc2=s=352x288:r=25:d=2,hue=h=90*" + seed, "-c:v", "mpeg2video",
                   "-q:v", "3", part});
        joined += ReadWhole(part);
    }
    WriteBytes(folder / "joined.ts", joined);
    RunHost(
        {"--method", "manual", "--mark", "12,62", "--pictures", folder / "pictures", folder / "joined.ts"});
    for (const auto& [scene, own, other] : {std::array{"2", "1", "2"}, {"3", "2", "1"}}) {
        const auto picture = folder / "pictures" / ("joined-000" + std::string(scene) + ".png");
        const auto frame = [&](const char* part) {
            return Distances(picture, folder / (std::string(part) + ".ts"), 12, 12)[0];
        };
        EXPECT_LT(frame(own) * 4, frame(other)) << scene;
    }
}

TEST(LostInput, CostsTheReportItsPicturesOnly) {
    const TempFolder folder;
    MakeClip(DvClip("pal-dv"), folder / "tape.dv");
    const std::filesystem::path pipe = folder / "list.csv";
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    // The list comes first: while nobody reads it the run waits with all scenes found.
    Process run({KxscenesProgram(), "-o", pipe, "--report", folder / "r.html", folder / "tape.dv"});
    while (run.OutputSoFar().find("\n4,") == std::string::npos)
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    std::filesystem::remove(folder / "tape.dv");
    std::ifstream list(pipe);
    const std::string text{std::istreambuf_iterator<char>(list), {}};
    const ProcessResult result = run.Wait();
    EXPECT_THAT(Lines(text), SizeIs(5));
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_THAT(Lines(result.err), ElementsAre(HasSubstr("tape.dv")));
    EXPECT_THAT(ReadWhole(folder / "r.html"), HasSubstr("\"pictures\":[]"));
}

TEST(HostileNames, GiveOneLineEach) {
    const TempFolder folder;
    WriteBytes(folder / "a\nb\x1b[31m.mp4", "");
    const ProcessResult result = RunHost({folder / "a\nb\x1b[31m.mp4"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.err, "kxscenes: error: " + (folder / "a?b?[31m.mp4: is empty\n").string());
}

} // namespace
