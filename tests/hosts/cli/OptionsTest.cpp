#include "hosts/cli/KxOptions.h"
#include "tests/Testing.h"

namespace {

/// A command line of words without spaces, in which '' is an empty one.
std::optional<EarlyEnd> Parse(const std::string& line, KxOptions& options) {
    std::istringstream text("kxscenes " + line);
    std::vector<std::string> words{std::istream_iterator<std::string>(text), {}};
    std::vector<const char*> arguments;
    for (const std::string& word : words)
        arguments.push_back(word == "''" ? "" : word.c_str());
    return ParseCommandLine(static_cast<int>(arguments.size()), arguments.data(), options);
}

TEST(Options, ReadsAll) {
    KxOptions options;
    ASSERT_FALSE(Parse("--method interval --interval 250 --mark 30,7 --timecode --xml list.xml --mark 7 "
                       "--method video,interval -- - -tape.dv",
                       options));
    const DetectionSettings& detection = options.batch.detection;
    EXPECT_THAT(detection.methods, ElementsAre(KxMethodInterval, KxMethodVideo));
    EXPECT_EQ(detection.interval, 250u);
    EXPECT_THAT(detection.marks, ElementsAre(7, 30));
    EXPECT_TRUE(detection.readTimecode);
    EXPECT_EQ(options.batch.xmlPath, "list.xml");
    EXPECT_THAT(options.batch.inputs, ElementsAre("-", "-tape.dv"));
}

TEST(Options, FlagsCanBeDenied) {
    for (const bool isDenied : {false, true}) {
        KxOptions options;
        ASSERT_FALSE(Parse(isDenied ? "--force=no a" : "--force a", options));
        EXPECT_EQ(options.batch.outputs.clips.existing, isDenied ? Existing::Keep : Existing::Replace);
    }
}

TEST(Options, CutsBesideTheMethodsOrWithoutThem) {
    for (const bool findsScenes : {true, false}) {
        KxOptions options;
        const std::string cuts = findsScenes ? "scenes," : "";
        ASSERT_FALSE(Parse("--cut-at " + cuts + "lines,recordings --cut-at lines --method video a", options));
        std::vector<std::string> words{"lines", "recording"};
        if (findsScenes)
            words.insert(words.begin(), "video");
        EXPECT_EQ(options.batch.detection.Words(), words);
    }
}

TEST(Options, WrongOnesGetOneLine) {
    for (const char* line : {"",
                             "''",
                             "--jobs 0 a",
                             "a ''",
                             "--method guess a",
                             "--method interval a",
                             "--method interval --interval 0 a",
                             "--method interval --interval 2147483648 a",
                             "--interval 5 a",
                             "--mark -1 a",
                             "--mark 1,x a",
                             "--mark 4294967296 a",
                             "--xml '' a",
                             "--xml",
                             "--speed a",
                             "--force=maybe a",
                             "--cut-at recording a",
                             "--cut-at recordings --xml list.xml a",
                             "--cut-at lines --mark 7 a",
                             "--cut-at lines --cut-threshold 7 a",
                             "--cut-at scenes,lines --from-stats stats.csv",
                             "--decode quick a",
                             "--decode fast --from-stats stats.csv",
                             "--part 4/3 --stats s.csv a",
                             "--part 1/3 a",
                             "--part 1/3 --stats s.csv -",
                             "--part 1/3 --stats s.csv -o list.csv a",
                             "--part 1/3 --stats s.csv --start 5 a",
                             "--part 1/3 --stats s.csv --from-stats p.csv",
                             "--part 1/3 --stats s.csv --fades end a",
                             "--flashes some a",
                             "--fades black a",
                             "--method interval --interval 9 --dissolves a",
                             "--scenes list.csv --flashes drop a"}) {
        KxOptions options;
        const auto end = Parse(line, options);
        ASSERT_TRUE(end) << line;
        EXPECT_EQ(end->exitCode, 2);
        EXPECT_EQ(end->text.find('\n'), end->text.size() - 1) << end->text;
        EXPECT_THAT(end->text, HasSubstr("kxscenes: error: "));
    }
}

} // namespace
