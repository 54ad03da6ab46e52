// The parameters on the command line, and their way into a filter.
#include "hosts/cli/ParameterOptions.h"
#include "running/detection/DetectionCalls.h"
#include "tests/MessageOf.h"
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

TEST(ParameterOptions, AnAreaInPixelsOrPerCent) {
    for (const char* wrong : {"0,0,10", "0,0,10,10,10", "0,0,1.5,10", "0,0,-1,10", "0,0,0,10", "x,0,10,10",
                              "", "0,0,101%,10%", "50%,0,50.1%,100%", "100%,0,1%,1%", "0,0,10%,nan%"}) {
        ParameterChoice choice;
        EXPECT_NE(Parse(std::string("--area=") + wrong, choice), "") << wrong;
    }
    const struct {
        const char* text;
        PictureSize seen, stored;
        std::array<std::int32_t, 4> area; // none: it reaches beyond the picture
    } cases[] = {
        {"0,10%,100%,85.5%", kAnySize, kAnySize, {0, 100, 1000, 855}},
        {"64,48,1792,984", {1920, 1080}, {1920, 1080}, {33, 44, 934, 912}}, // 33.3 to 966.7, 44.4 to 955.6
        {"0,0,1366,768", {1360, 768}, {1366, 768}, {0, 0, 1000, 1000}},     // what fills no block is not seen
        {"0,0,1,50%", {1920, 1080}, {1920, 1080}, {0, 0, 1, 500}},
        {"1,0,1366,768", {1360, 768}, {1366, 768}, {}},
        {"0,700,100%,69", {1360, 768}, {1366, 768}, {}},
    };
    for (const auto& [text, seen, stored, area] : cases) {
        SCOPED_TRACE(text);
        ParameterChoice choice;
        EXPECT_EQ(Parse(std::string("--area=") + text, choice), "");
        if (area == std::array<std::int32_t, 4>{}) {
            EXPECT_THAT(MessageOf([&, &size = seen, &whole = stored] { choice.SettleArea(size, whole); }),
                        HasSubstr("beyond the picture"));
            continue;
        }
        choice.SettleArea(seen, stored);
        EXPECT_EQ(choice.On({}),
                  (DetectionParameters{
                      .areaLeft = area[0], .areaTop = area[1], .areaWidth = area[2], .areaHeight = area[3]}));
    }
}

} // namespace
