#include "hosts/kxscenes/Options.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace scenedetect {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

CommandLine Parse(std::vector<const char*> arguments) {
    arguments.insert(arguments.begin(), "kxscenes");
    return ParseCommandLine(static_cast<int>(arguments.size()), arguments.data());
}

TEST(Options, DefaultsToThePictureMethod) {
    const auto options = Parse({"tape.dv"}).options;
    ASSERT_TRUE(options);
    EXPECT_EQ(options->method, KxMethodVideo);
    EXPECT_EQ(options->input, "tape.dv");
    EXPECT_TRUE(options->marks.empty());
    EXPECT_TRUE(options->xmlPath.empty());
    EXPECT_FALSE(options->readTimecode);
}

TEST(Options, ReadsAll) {
    const auto options = Parse({"--method", "interval", "--interval", "250", "--mark", "30,7", "--timecode",
                                "--xml", "list.xml", "--mark", "7", "--", "-tape.dv"})
                             .options;
    ASSERT_TRUE(options);
    EXPECT_EQ(options->method, KxMethodInterval);
    EXPECT_EQ(options->interval, 250u);
    EXPECT_THAT(options->marks, ElementsAre(7, 30));
    EXPECT_TRUE(options->readTimecode);
    EXPECT_EQ(options->xmlPath, "list.xml");
    EXPECT_EQ(options->input, "-tape.dv");
}

TEST(Options, WrongOnesGetOneLine) {
    const std::vector<std::vector<const char*>> wrong = {
        {},
        {""},
        {"a", "b"},
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
        EXPECT_THAT(line.text, HasSubstr("kxscenes: "));
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
