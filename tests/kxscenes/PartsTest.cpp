// A film measured in parts is the film measured in one.
#include "tests/Testing.h"
#include "tests/kxscenes/Material.h"

namespace {

struct PartCase {
    const char* name;
    const char* encoding;
    int parts = 5;
};

class FilmInParts : public TestWithParam<PartCase> {
  protected:
    void Measure(int part) {
        m_tables.push_back(m_folder / ("part" + std::to_string(part) + ".csv"));
        const ProcessResult result =
            RunHost({"--part", std::to_string(part) + '/' + std::to_string(GetParam().parts), "--stats",
                     m_tables.back(), m_film});
        EXPECT_EQ(result.exitCode, 0) << result.err;
        EXPECT_EQ(result.out, "");
    }
    // What is printed, the figures and two lists.
    std::vector<std::string> Outputs(std::vector<std::string> arguments) {
        const std::vector<std::filesystem::path> paths = {m_folder / "a.csv", m_folder / "a.json",
                                                          m_folder / "a.figures"};
        arguments.insert(arguments.begin(), {"-o", paths[0], "-o", paths[1], "--stats", paths[2]});
        std::vector<std::string> outputs = {RunHost(arguments).out};
        for (const auto& path : paths) {
            outputs.push_back(ReadWhole(path));
            std::filesystem::remove(path);
        }
        return outputs;
    }

    TempFolder m_folder;
    std::filesystem::path m_film;
    std::vector<std::string> m_tables;
};

TEST_P(FilmInParts, IsTheSameFilm) {
    Clip clip;
    clip.size = "160x120";
    clip.frames = 100;
    clip.cuts = {33, 58};
    clip.encoding = Words(GetParam().encoding);
    m_film = m_folder / clip.encoding.back();
    clip.encoding.pop_back();
    MakeClip(clip, m_film);
    const std::vector<std::string> whole = Outputs({m_film});
    for (int part = GetParam().parts; part != 0; --part)
        Measure(part);
    m_tables.insert(m_tables.begin(), "--from-stats");
    EXPECT_EQ(Outputs(m_tables), whole);
    EXPECT_THAT(whole[0], HasSubstr("1,0,00:00:00:00,0.000\n"));
}

INSTANTIATE_TEST_SUITE_P(
    Codecs, FilmInParts,
    Values(PartCase{"H264OpenGop",
                    "-c:v libx264 -preset veryfast -x264-params open-gop=1:keyint=10:scenecut=0 clip.ts"},
           PartCase{"H264VariableRate", "-vf setpts='(N/25+0.01*mod(N,3))/TB' -vsync vfr -enc_time_base "
                                        "1/1000 -c:v libx264 -preset veryfast -g 10 clip.mkv"},
           PartCase{"Mpeg4WithoutStamps", "-c:v mpeg4 -g 10 -bf 2 clip.avi"},
           PartCase{"MorePartsThanFrames", "-c:v mjpeg -frames:v 5 clip.avi", 8}),
    kByName);

TEST(Parts, DvHasNone) {
    const TempFolder folder;
    MakeClip(DvClip("pal-dv"), folder / "tape.dv");
    Remux(folder / "tape.dv", folder / "tape.avi");
    for (const char* name : {"tape.dv", "tape.avi"}) {
        const ProcessResult result =
            RunHost({"--part", "1/2", "--stats", folder / "part.csv", folder / name});
        EXPECT_EQ(result.exitCode, 1);
        EXPECT_THAT(result.err, HasSubstr(std::string(name) + ": DV is not measured in parts"));
        EXPECT_FALSE(std::filesystem::exists(folder / "part.csv"));
    }
}

} // namespace
