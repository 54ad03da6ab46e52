#include "hosts/kxscenes/Options.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace scenedetect {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

CommandLine Parse(std::vector<const char*> arguments) {
    arguments.insert(arguments.begin(), "kxscenes");
    KxOptions own;
    return ParseCommandLine(static_cast<int>(arguments.size()), arguments.data(), own);
}

TEST(Options, DefaultsToThePictureMethod) {
    const auto options = Parse({"tape.dv"}).options;
    ASSERT_TRUE(options);
    EXPECT_THAT(options->methods, ElementsAre(KxMethodVideo));
    EXPECT_THAT(options->inputs, ElementsAre("tape.dv"));
    EXPECT_TRUE(options->marks.empty());
    EXPECT_TRUE(options->xmlPath.empty());
    EXPECT_FALSE(options->readTimecode);
}

TEST(Options, ReadsAll) {
    const auto options =
        Parse({"--method", "interval", "--interval", "250", "--mark", "30,7", "--timecode", "--xml",
               "list.xml", "--mark", "7", "--method", "video,interval", "--", "-", "-tape.dv"})
            .options;
    ASSERT_TRUE(options);
    EXPECT_THAT(options->methods, ElementsAre(KxMethodInterval, KxMethodVideo));
    EXPECT_EQ(options->interval, 250u);
    EXPECT_THAT(options->marks, ElementsAre(7, 30));
    EXPECT_TRUE(options->readTimecode);
    EXPECT_EQ(options->xmlPath, "list.xml");
    EXPECT_THAT(options->inputs, ElementsAre("-", "-tape.dv"));
}

TEST(Options, WrongOnesGetOneLine) {
    const std::vector<std::vector<const char*>> wrong = {
        {},
        {""},
        {"--jobs", "0", "a"},
        {"a", ""},
        {"--method", "guess", "a"},
        {"--method", "interval", "a"},
        {"--method", "interval", "--interval", "0", "a"},
        {"--method", "interval", "--interval", "2147483648", "a"},
        {"--interval", "5", "a"},
        {"--mark", "-1", "a"},
        {"--mark", "1,x", "a"},
        {"--mark", "4294967296", "a"},
        {"--xml", "", "a"},
        {"--xml"},
        {"--speed", "a"},
    };
    for (const auto& arguments : wrong) {
        const CommandLine line = Parse(arguments);
        EXPECT_FALSE(line.options);
        EXPECT_EQ(line.exitCode, 2);
        EXPECT_EQ(line.text.find('\n'), line.text.size() - 1) << line.text;
        EXPECT_THAT(line.text, HasSubstr("kxscenes: error: "));
    }
}

TEST(Options, HelpAndVersionAreNoErrors) {
    for (const char* option : {"--help", "-h", "--version"}) {
        const CommandLine line = Parse({option});
        EXPECT_FALSE(line.options);
        EXPECT_EQ(line.exitCode, 0);
        EXPECT_THAT(line.text, HasSubstr("kxscenes"));
    }
}

} // namespace
} // namespace scenedetect
