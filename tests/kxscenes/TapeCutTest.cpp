// A tape with a change of each kind: cuts, clips, and the clips' audio.
#include "tests/DvFrame.h"
#include "tests/Testing.h"
#include "tests/kxscenes/Material.h"

#include <map>
#include <random>

namespace {

constexpr std::size_t kFrame625 = 144000;
constexpr std::size_t kFrame525 = 120000;
constexpr int kFirst525 = 70;
constexpr int kFrames = 80;

// Where each change is; the first two segments are one recording, across midnight.
const std::map<std::string, int> kCuts = {{"recordings", 20},  {"timecode", 30},    {"aspect", 40},
                                          {"audio", 50},       {"record-flag", 60}, {"record-stop", 60},
                                          {"lines", kFirst525}};

std::size_t OffsetOf(int frame) {
    const auto frames625 = static_cast<std::size_t>(std::min(frame, kFirst525));
    return frames625 * kFrame625 + (static_cast<std::size_t>(frame) - frames625) * kFrame525;
}

std::string MakeTape() {
    std::mt19937 random(7);
    std::string tape;
    for (int i = 0; i < kFrames; ++i) {
        const bool is625 = i < kFirst525;
        const int rate = is625 ? 25 : 30;
        const int clock = 86399 + (i + 15) / 25; // midnight with the tenth
        const int day = (clock >= 86400 ? 1 : 0) + (i >= 20 ? 1 : 0);
        const int timecode = 90000 + i + (i >= 30 ? 1000 : 0);
        DvFrame frame(is625);
        frame.SetDate(day == 0 ? Pack{0x62, 0xFF, 0x31, 0x12, 0x03} : Pack{0x62, 0xFF, Bcd(day), 0x01, 0x04});
        frame.SetTime(TimePack(clock)).SetTimecode(TimePack(timecode / rate, timecode % rate));
        frame.SetSourceControl({0x61, 0x3F, static_cast<std::uint8_t>(i < 40 ? 0xC8 : 0xCA), 0xFC, 0xFF});
        frame.SetAudio(i < 50 ? 0xC0 : 0xD1);
        frame.SetMarks(i >= 58 && i < 60 ? 0x8F : i >= 60 && i < 63 ? 0x4F : 0xCF);
        frame.FillAudio([&random] { return static_cast<std::uint8_t>(random()); });
        tape.append(frame.Bytes().begin(), frame.Bytes().end());
    }
    return tape;
}

std::string SamplesOf(const std::filesystem::path& file, int stream) {
    return Process({"ffmpeg", "-v", "error", "-i", file, "-map", "0:a:" + std::to_string(stream), "-f",
                    "s16le", "-"})
        .Wait()
        .out;
}

class TapeCuts : public Test {
  protected:
    TapeCuts() { WriteBytes(m_tape, m_bytes); }

    // First frames of scenes, whatever columns there are beside.
    [[nodiscard]] std::vector<std::int64_t> Starts(std::vector<std::string> arguments) const {
        arguments.insert(arguments.end(), {"-q", m_tape});
        std::vector<std::int64_t> starts;
        for (const std::string& line : Lines(RunHost(arguments).out))
            if (!line.starts_with("scene"))
                starts.push_back(std::stoll(line.substr(line.find(',') + 1)));
        return starts;
    }

    TempFolder m_folder;
    const std::filesystem::path m_tape = m_folder / "tape.dv";
    const std::string m_bytes = MakeTape();
};

TEST_F(TapeCuts, AreWhereTheTapeTells) {
    std::vector<std::int64_t> all = {0};
    std::string list;
    for (const auto& [kind, frame] : kCuts) {
        EXPECT_THAT(Starts({"--cut-at", kind}), ElementsAre(0, frame)) << kind;
        all.push_back(frame);
        list += (list.empty() ? "" : ",") + kind;
    }
    std::ranges::sort(all);
    all.erase(std::ranges::unique(all).begin(), all.end());
    EXPECT_EQ(Starts({"--cut-at", list, "--split", m_folder / "all"}), all);
    std::string joined;
    for (std::size_t i = 1; i <= all.size(); ++i)
        joined += ReadWhole(m_folder / "all" / ("tape-000" + std::to_string(i) + ".dv"));
    EXPECT_TRUE(joined == m_bytes);
    EXPECT_EQ(
        Starts({"--cut-at", list, "--start", "35", "--end", "65"}),
        (std::vector<std::int64_t>{35, kCuts.at("aspect"), kCuts.at("audio"), kCuts.at("record-flag")}));
}

// In containers the clips end where the audio or the lines change, too.
TEST_F(TapeCuts, GiveClipsTheirAudio) {
    const ProcessResult result =
        RunHost({"--cut-at", "recordings", "--split", m_folder / "clips", "--container", "mov", m_tape});
    EXPECT_THAT(result.err,
                AllOf(HasSubstr("with another audio format"), HasSubstr("with another line system")));
    const struct {
        const char* name;
        int begin, end, streams;
        std::size_t samples; // of a frame
    } clips[] = {{"tape-0001.mov", 0, kCuts.at("recordings"), 1, 1920},
                 {"tape-0002.mov", kCuts.at("recordings"), kCuts.at("audio"), 1, 1920},
                 {"tape-0002-2.mov", kCuts.at("audio"), kCuts.at("lines"), 2, 1280},
                 {"tape-0002-3.mov", kCuts.at("lines"), kFrames, 2, 1068}};
    for (const auto& clip : clips) {
        SCOPED_TRACE(clip.name);
        const int frames = clip.end - clip.begin;
        const auto part = m_folder / "part.dv";
        WriteBytes(part, m_bytes.substr(OffsetOf(clip.begin), OffsetOf(clip.end) - OffsetOf(clip.begin)));
        for (int stream = 0; stream < clip.streams; ++stream) {
            const std::string samples = SamplesOf(m_folder / "clips" / clip.name, stream);
            EXPECT_EQ(samples.size(), static_cast<std::size_t>(frames) * clip.samples * 4);
            EXPECT_TRUE(samples == SamplesOf(part, stream));
        }
        EXPECT_EQ(SamplesOf(m_folder / "clips" / clip.name, clip.streams), "");
    }
}

// DV frames without audio beside a track that has it.
TEST(MuteFrames, KeepTheirContainersAudio) {
    const TempFolder folder;
    const auto film = folder / "film.mov";
    RunFfmpeg({"-f", "lavfi", "-i", "testsrc2=s=720x576:r=25", "-f", "lavfi", "-i",
               "anoisesrc=r=48000:seed=3", "-t", "1", "-c:v", "dvvideo", "-pix_fmt", "yuv420p", "-c:a",
               "pcm_s16le", film});
    const ProcessResult result =
        RunHost({"--method", "interval", "--interval", "10", "--split", folder / "clips", film});
    EXPECT_THAT(Lines(result.err), ElementsAre(HasSubstr("clips are .mov files, to keep it")));
    std::string joined;
    for (const char* name : {"film-0001.mov", "film-0002.mov", "film-0003.mov"})
        joined += SamplesOf(folder / "clips" / name, 0);
    EXPECT_TRUE(joined == SamplesOf(film, 0) && !joined.empty());
}

} // namespace
