#include "products/report/ReportPage.h"
#include "products/outputs/NameText.h"
#include "scenes/FrameFigures.h"
#include "tests/Testing.h"
#include "tests/products/outputs/Tables.h"

#include <nlohmann/json.hpp>

namespace {

nlohmann::json RunOf(const std::string& page) {
    const std::string begin = "id=\"run\">";
    const auto from = page.find(begin) + begin.size();
    return nlohmann::json::parse(page.substr(from, page.find("</script>", from) - from));
}

std::string PageOf(const SceneTable& table, const ReportFigures& figures) {
    return MakeReportPage({table, figures, {}, {}, {}, {}, {}});
}

TEST(ReportPage, NamesAreTextWhateverIsInThem) {
    SceneTable table = TableOf({25, 1}, {50, 60, 100});
    table.name = "</script><b>&\xFF";
    const std::string page = PageOf(table, {});
    EXPECT_THAT(page, HasSubstr("<title>&lt;/script&gt;&lt;b&gt;&amp;\xEF\xBF\xBD: scenes</title>"));
    const nlohmann::json run = RunOf(page);
    EXPECT_EQ(run.at("name"), "</script><b>&\xEF\xBF\xBD");
    EXPECT_EQ(run.at("scenes").at(1).at("row"), -1);
}

TEST(ReportPage, LinksToTheFilmWhereItLiesBesideThePage) {
    EXPECT_EQ(RelativeUrl("/films/a b#1.mp4", "/films/pages/../x.html"), "a%20b%231.mp4");
    EXPECT_EQ(RelativeUrl("/films/c:d.mp4", "/pages/x.html"), "../films/c%3Ad.mp4");
    EXPECT_EQ(RelativeUrl("film.mp4", "page.html"), "film.mp4");
}

// Of units of half a frame. Frame 2 is missing.
TEST(ReportFigures, TellPlacesAndColumns) {
    const TimeScale scale{{1, 50}, {25, 1}};
    ReportFigures figures;
    figures.Begin(scale);
    constexpr KxFrameDistances kFirst = {{-1, -1, -1, -1, -1, -1, -1, -1}, 0x102, 0x304};
    KxFrameDistances third = kFirst;
    third.nDistance[0] = 7;
    for (const auto& [frame, time, distances] :
         {std::tuple(0, 0, kFirst), std::tuple(1, 2, kFirst), std::tuple(3, 6, third),
          std::tuple(4, 8, kFirst), std::tuple(5, 11, kFirst)})
        figures.Add({frame, time}, {0, frame, 9, 0, 0}, distances);
    const nlohmann::json run = RunOf(PageOf(TableOf({25, 1}, {0, 3, 6}), figures));
    EXPECT_EQ(run.at("rows"), 5);
    EXPECT_EQ(run.at("places").dump(), "[[0,0,0],[2,3,6],[4,5,11]]");
    EXPECT_EQ(run.at("columns").size(), 12u);
    EXPECT_EQ(run.at("end").at("time"), 6 * 40'000);
    EXPECT_EQ(RunOf(PageOf(TableOf({25, 1}, {6}), figures)).at("end").at("time"), 13) << "no scene is left";
    const auto columns = figures.Columns(13);
    EXPECT_THAT(columns[0].bytes, ElementsAre(0, 1, 3, 4, 5));
    EXPECT_THAT(columns[2].bytes, ElementsAre(255, 255, 7, 255, 255));
    EXPECT_THAT(columns[10].bytes, ElementsAre(2, 1, 2, 1, 2, 1, 2, 1, 2, 1));
    EXPECT_THAT(columns[11].bytes, ElementsAre(4, 3, 4, 3, 4, 3, 4, 3, 4, 3));
    // As at a variable rate.
    for (std::int64_t frame = 6; frame < 2000; ++frame)
        figures.Add({frame, frame * 3}, {}, kFirst);
    EXPECT_EQ(figures.Places().size(), 2u);
    const std::vector<std::uint8_t> durations = figures.Columns(6001).back().bytes;
    ASSERT_EQ(durations.size(), 1999u * 4);
    EXPECT_THAT(std::vector(durations.begin() + 8, durations.begin() + 24),
                ElementsAre(2, 0, 0, 0, 3, 0, 0, 0, 7, 0, 0, 0, 3, 0, 0, 0));
    EXPECT_EQ(durations[1998 * 4], 4);
}

} // namespace
