#include "products/report/ReportPage.h"
#include "tests/Testing.h"
#include "tests/products/outputs/Tables.h"

namespace {

// Without figures, pictures and settings.
std::string PageOf(const SceneTable& table) {
    const Timeline none;
    return MakeReportPage({table, none, 0, 0, {}, {}});
}

// At 40 ms a frame 90, 100 and 510 ms are nearest to the frames 2, 3 and 13 of the nominal rate.
TEST(ReportPage, TimelineIsAsLongAsTheRunWhateverTheRate) {
    SceneTable table = VariableTable();
    EXPECT_THAT(PageOf(table),
                AllOf(HasSubstr("data-frames=\"13\" data-first=\"0\""), HasSubstr(" data-variable=\"\""),
                      HasSubstr("d=\"M0 0V528M2 0V528M3 0V528\"")));
    table = TableOf({25, 1}, {50, 60, 100});
    EXPECT_THAT(PageOf(table),
                AllOf(HasSubstr("data-frames=\"50\" data-first=\"50\""), Not(HasSubstr(" data-variable"))));
}

TEST(ReportPage, SizeIsThatOfTheUprightPicture) {
    SceneTable table = TableOf({25, 1}, {0, 10});
    table.width = 720;
    table.height = 576;
    for (const auto& [turns, size] : {std::pair(0, "720 &times; 576"), std::pair(1, "576 &times; 720"),
                                      std::pair(2, "720 &times; 576"), std::pair(3, "576 &times; 720")}) {
        table.quarterTurns = turns;
        EXPECT_THAT(PageOf(table), HasSubstr(size)) << turns;
    }
}

} // namespace
