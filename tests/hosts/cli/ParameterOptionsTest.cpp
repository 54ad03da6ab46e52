// The parameters on the command line, and their way into a filter.
#include "hosts/cli/ParameterOptions.h"
#include "running/detection/DetectionCalls.h"
#include "tests/Testing.h"
#include "tests/filter/WatchedFilter.h"

#include <CLI/CLI.hpp>

namespace {

/// What is wrong, if anything.
std::string Parse(const std::string& line, ParameterChoice& choice) {
    CLI::App app;
    AddParameterOptions(app, choice);
    try {
        app.parse(line);
    } catch (const CLI::Error& error) {
        return error.what();
    }
    return "";
}

TEST(ParameterOptions, TakeWhatIsInRangeToTheFilter) {
    ParameterChoice choice;
    for (const char* option : {"cut-threshold", "dark-level", "clamp", "votes", "longest-scene"})
        for (const char* word : {"-2", "2147483648", "1.5", "x", "''"})
            EXPECT_NE(Parse(std::string("--") + option + '=' + word, choice), "") << option << ' ' << word;
    EXPECT_EQ(Parse("--votes 5", choice), "--votes: 5 is not a whole number of 1 to 4");

    choice = {};
    EXPECT_EQ(Parse("", choice), "");
    EXPECT_TRUE(choice.IsEmpty());
    EXPECT_EQ(Parse("--dark-level -1 --clamp=60", choice), "");
    EXPECT_EQ(choice.On({1, 2, 3, 4, 5}), (DetectionParameters{1, -1, 60, 4, 5}));

    WatchedFilter filter(KxMethodVideo, FourccType("YUY2", 16, 16, 16));
    ApplyParameters(*filter.operator->(), choice);
    const LONG expected[] = {13, -1, 60, 3, 0};
    for (ULONG number = 0; number < std::size(expected); ++number) {
        LONG value = 77;
        EXPECT_EQ(filter->GetParameter(number, &value), S_OK);
        EXPECT_EQ(value, expected[number]);
    }
}

} // namespace
