// The table of a run's figures, written and read back, and what the reader refuses.
#include "products/stats/StatsReader.h"
#include "products/stats/StatsWriter.h"
#include "reading/base/CsvRecords.h"
#include "reading/base/HostError.h"
#include "tests/MessageOf.h"
#include "tests/TempFolder.h"
#include "tests/Testing.h"

#include <regex>

namespace {

StatsSettings Settings() {
    return {.scale = {{1001, 30000}, {30000, 1001}},
            .parameters = {.cutThreshold = 20, .darkLevel = -1, .minVotes = 4, .longestScene = 750},
            .notes = {{"input", "a \"fine\", long\nname.dv"}, {"start timecode", "01:00:00;00"}}};
}

std::string Written(const StatsSettings& settings, const std::vector<StatsRow>& rows) {
    std::string text;
    StatsWriter writer(settings, [&text](std::string_view block) { text += block; });
    for (const StatsRow& row : rows)
        writer.Add(row);
    writer.Finish();
    return text;
}

const std::vector<StatsRow> kRows = {{{0, 0, 0}, {0, 92, 92, 92, KxFrameCut}},
                                     {{1, 1, 144000}, {1, 0, 92, 21, KxFrameFilled}},
                                     {{7, 7, -1}, {2, 92, 0, 92, KxFrameDark | KxFrameCut}}};
const std::string kText = R"(frame,difference,level,filled,dark,cut,sample,time,byte,setting,value
0,92,92,,0,1,0,0,0,format,1
1,0,92,21,0,0,1,1,144000,unit-num,1001
7,92,0,,1,1,2,7,,unit-den,30000
,,,,,,,,,rate-num,30000
,,,,,,,,,rate-den,1001
,,,,,,,,,cut-threshold,20
,,,,,,,,,dark-level,-1
,,,,,,,,,clamp,255
,,,,,,,,,votes,4
,,,,,,,,,longest-scene,750
,,,,,,,,,input,"a ""fine"", long
name.dv"
,,,,,,,,,start timecode,01:00:00;00
)";

TEST(StatsFile, IsWrittenRowByRowAndReadBack) {
    EXPECT_EQ(Written(Settings(), kRows), kText);
    const std::string ofSpreadsheet = "\xEF\xBB\xBF" + std::regex_replace(kText, std::regex("\n"), "\r\n");
    for (const std::string& text : {kText, ofSpreadsheet}) {
        const Stats stats = ParseStats(text, "run.csv");
        EXPECT_EQ(stats.settings.parameters, Settings().parameters);
        ASSERT_EQ(stats.settings.notes.size(), 2u);
        ASSERT_EQ(stats.rows.size(), 3u);
        EXPECT_EQ(stats.rows[2].place, (FilePlace{7, 7, -1}));
        EXPECT_EQ(stats.rows[2].figures.nFilled, 92);
    }
    const Stats stats = ParseStats(kText, "run.csv");
    EXPECT_EQ(Written(stats.settings, stats.rows), kText) << "nothing is lost between";
    const std::string whole = Written({}, {});
    EXPECT_THAT(whole, HasSubstr("longest-scene,0\n")) << "a number of frames";
    EXPECT_THAT(whole, Not(HasSubstr("area"))) << "as tables were before there were areas";
    StatsSettings ofPart = Settings();
    ofPart.parameters.areaTop = 100;
    ofPart.parameters.areaHeight = 755;
    EXPECT_EQ(ParseStats(Written(ofPart, kRows), "").settings.parameters, ofPart.parameters);
}

TEST(StatsFile, DistancesAreColumnsOfFormat2) {
    StatsSettings settings = Settings();
    settings.hasDistances = true;
    std::vector<StatsRow> rows = kRows;
    for (std::size_t i = 0; i < rows.size(); ++i)
        rows[i].distances.nVariance = rows[i].distances.nDetail = static_cast<LONG>(i) * 100;
    rows[2].distances.nDistance[0] = 17;
    const std::string text = Written(settings, rows);
    EXPECT_EQ(text.substr(text.find('\n'), 41), "\n0,92,92,,0,1,0,0,0,,,,,,,,,0,0,format,2\n");
    EXPECT_NE(text.find("\n7,92,0,,1,1,2,7,,17,,,,,,,,200,200,unit-den,30000\n,,,,,,,,,,,,,,,,,,,rate-num,"),
              std::string::npos);
    const Stats stats = ParseStats(text, "run.csv");
    ASSERT_TRUE(stats.settings.hasDistances);
    EXPECT_EQ(stats.rows[2].distances.nDistance[0], 17);
    EXPECT_EQ(stats.rows[2].distances.nDistance[1], -1);
    EXPECT_EQ(Written(stats.settings, stats.rows), text);
    for (const auto& [from, to, message] : std::vector<std::array<std::string, 3>>{
             {"7,,17,", "7,,,", "line 4: a distance is \"\" where a whole number of 0 to 255"},
             {"7,,17,", "7,,256,", "line 4: a distance is \"256\""},
             {",200,200,unit", ",,200,unit", "line 4: variance is \"\""},
             {",200,unit", ",16321,unit", "line 4: detail is \"16321\""},
             {"format,2", "format,1", "line 2: the table's format is 1, which its columns are not of"}}) {
        std::string wrong = text;
        wrong.replace(wrong.find(from), from.size(), to);
        EXPECT_THAT(MessageOf([&] { (void)ParseStats(wrong, "run.csv"); }), testing::HasSubstr(message));
    }
}

TEST(StatsFile, DamageIsRefusedInOneLine) {
    const struct {
        const char* from; // in kText; empty: the whole
        const char* to;
        const char* message;
    } cases[] = {
        {"", "", "run.csv, line 1: no statistics of kxscenes: the line frame,difference"},
        {"frame,", "Frame,", "line 1: no statistics"},
        {"byte,", "byte,more,", "line 1: the columns are not those of this version: another one wrote"},
        {"92,92,,0", "92,92,0", "line 2: 10 fields where 11 should be: the file is damaged or cut short"},
        {"0,92,92", "0,92,256", "line 2: level is \"256\" where a whole number of 0 to 255 should be"},
        {"0,92,92", "0,-1,92", "line 2: difference is \"-1\""},
        {"0,92,92", "0,9.2,92", "line 2: difference is \"9.2\""},
        {"1,0,92,21,0,", "1,0,92,x,0,", "line 3: filled is \"x\""},
        {"1,0,92,21,0,", "1,0,92,21,,", "line 3: dark is \"\" where a whole number of 0 to 1 should be"},
        {"7,92,0,,1", "1,92,0,,1",
         "line 4: frame is \"1\" where a whole number of 2 to 2147483647 should be"},
        {"0,0,1,1,144000", "0,0,1,9,144000",
         "line 4: time is \"7\" where a whole number from 9 on should be"},
        {"0,0,1,1,144000", "0,0,1,9223372036854775806,144000",
         "line 3: time is \"9223372036854775806\" where a whole number of 0 to 1152921504606846976 should"},
        {"1,0,92,21,0,0,1,1,144000,unit-num,1001\n", "",
         "line 3: sample is 2 where 1 should be: rows are missing or in another order"},
        {",,,,,,,,,rate-num,30000\n", ",,,,,,,,,rate-num,30000\n8,0,0,,0,0,3,8,,,\n",
         "line 6: a frame after the last one"},
        {",,,,,,,,,votes,4\n", "", "run.csv: the setting \"votes\" is missing"},
        // 2^59 units of 1001/30000 s, in the row before that tells the unit's second number.
        {"1,144000,unit-num,1001\n7,92,0,,1,1,2,7,",
         "576460752303423488,144000,unit-num,1001\n7,92,0,,1,1,2,576460752303423489,",
         "line 3: time is 576460752303423488, which is more than 2147483647 seconds"},
        {"7,92,0,,1,1,2,7,", "7,92,0,,1,1,2,576460752303423488,",
         "line 4: time is 576460752303423488, which is more than 2147483647 seconds"},
        {"format,1", "format,3", "line 2: the table's format is \"3\", and only 1 and 2 are known"},
        {"format,1", "format,2", "line 2: the table's format is 2, which its columns are not of"},
        {"rate-num,30000", "rate-num,0", "line 5: rate-num is \"0\""},
        {"votes,4", "votes,5", "line 10: votes is \"5\" where a whole number of 1 to 4 should be"},
        {"votes,4", "votes,\"4\n\x1B[2J0123456789012345678901234567890123456789\"",
         "line 10: votes is \"4??[2J0123456789012345678901234567890123...\""},
        {"votes,4", "clamp,4", "line 10: the setting \"clamp\" stands there twice"},
        {"votes,4", ",4", "line 10: a setting without a name"},
        {"start timecode,01:00:00;00\n", "start timecode,01:00:00;00",
         "line 14: the line has no end: the file is cut short"},
        {"name.dv\"\n", "name.dv\n", "line 12: a quote is not closed"},
        {"name.dv\"\n", "name.dv\"x\n", "line 12: a quote or a line end in the wrong place"},
    };
    for (const auto& one : cases) {
        const std::string from = one.from;
        std::string text = kText;
        if (from.empty())
            text = one.to;
        else
            text.replace(text.find(from), from.size(), one.to);
        try {
            (void)ParseStats(text, "run.csv");
            ADD_FAILURE() << one.message;
        } catch (const HostError& error) {
            EXPECT_NE(std::string(error.what()).find(one.message), std::string::npos) << error.what();
            EXPECT_EQ(std::string(error.what()).find('\n'), std::string::npos);
        }
    }
}

TEST(StatsFile, FilesAreReadWholeAndGapsNotWritten) {
    const TempFolder folder;
    std::vector<StatsRow> rows;
    for (std::int32_t i = 0; i < 60000; ++i) // more than the reader's pieces of a mebibyte
        rows.push_back({{i, i, i}, {static_cast<ULONG>(i), i % 256, i % 251, i % 256, 0}});
    std::ofstream(folder / "run.csv", std::ios::binary) << Written(Settings(), rows);
    const Stats stats = ReadStats((folder / "run.csv").string());
    ASSERT_EQ(stats.rows.size(), rows.size());
    EXPECT_EQ(stats.rows.back().figures.nDifference, 59999 % 256);
    rows.erase(rows.begin() + 7);
    EXPECT_THROW(Written(Settings(), rows), HostError);
    EXPECT_THROW((void)ReadStats((folder / "none.csv").string()), HostError);
}

} // namespace
