// Parts of a film joined, and what does not belong together.
#include "products/stats/StatsPart.h"
#include "products/stats/StatsReader.h"
#include "products/stats/StatsWriter.h"
#include "reading/base/HostError.h"
#include "tests/MessageOf.h"
#include "tests/Testing.h"

namespace {

// The frames `first` to `last` of a film, as the part's machine counts them; the sum of a picture is its
// frame.
Stats Part(std::int64_t part, int first, int last, int counted = 0) {
    PartFacts facts{{part, 3}, 9000, "mkv, decoded by h264", {}};
    facts.media.width = 64;
    facts.media.startTimecode = SourceTimecode{90'000, true, 30};
    Stats stats{"p" + std::to_string(part), PartSettings({{1, 25}, {25, 1}}, {}, "/a/film.mkv", facts), {}};
    for (int i = first; i <= last; ++i)
        stats.rows.push_back(
            {{i + counted, i, i * 100}, {static_cast<ULONG>(i - first), i == first ? 99 : i, 50 + i, 0, 0}});
    stats.settings.notes.push_back({std::string(kFirstPictureNote), std::to_string(first)});
    stats.settings.notes.push_back({std::string(kLastPictureNote), std::to_string(last)});
    return stats;
}

std::string& Note(Stats& stats, std::string_view name) {
    return std::ranges::find(stats.settings.notes, name, &StatsNote::name)->value;
}

TEST(StatsPart, PartsInAnyOrderAreTheFilm) {
    std::vector<Stats> parts = {Part(3, 4, 6, 1), Part(1, 0, 4),
                                Part(2, 4, 4)}; // the second has no own frame
    Note(parts[0], "input") = "/b/film.mkv";
    parts[0].settings.notes.push_back({std::string(kBrokenOffNote), "1"});
    const JoinedStats joined = JoinParts(parts);
    EXPECT_EQ(joined.stats.settings.notes, (std::vector<StatsNote>{{"input", "/a/film.mkv"}}));
    EXPECT_FALSE(joined.stats.settings.isPart);
    EXPECT_TRUE(joined.breaksOff);
    EXPECT_EQ(joined.media.width, 64);
    ASSERT_TRUE(joined.media.startTimecode);
    EXPECT_EQ(joined.media.startTimecode->frame, 90'000);
    ASSERT_EQ(joined.stats.rows.size(), 7u);
    for (std::int32_t i = 0; i < 7; ++i) {
        const auto& [place, figures, distances] = joined.stats.rows[static_cast<std::size_t>(i)];
        EXPECT_EQ(place, (FilePlace{i, i, i * 100})) << "counted on from the part before";
        EXPECT_EQ(figures.dwPosition, static_cast<ULONG>(i));
        EXPECT_EQ(figures.nDifference, i == 0 ? 99 : i) << "of the part that knows the picture before";
    }
    parts[2].rows.clear();
    EXPECT_EQ(JoinParts(parts).stats.rows.size(), 7u);
}

TEST(StatsPart, WhatDoesNotBelongTogetherIsRefusedByName) {
    using Change = std::function<void(std::vector<Stats>&)>;
    const std::pair<Change, const char*> cases[] = {
        {[](auto& parts) { parts.erase(parts.begin() + 1); }, "p1: part 2/3 of its film is missing"},
        {[](auto& parts) { parts.pop_back(); }, "part 3/3 of its film is missing"},
        {[](auto& parts) { parts.push_back(parts[1]); }, "p2: is part 2/3, and so is p2"},
        {[](auto& parts) { Note(parts[1], "part") = "2/4"; }, "p2: is part 2/4, and p1 is 1/3"},
        {[](auto& parts) { Note(parts[1], "part") = "0/3"; }, "p2: is no part of a film"},
        {[](auto& parts) { parts[2].settings.isPart = false; }, "p3: is no part of a film"},
        {[](auto& parts) { Note(parts[1], "input") = "/a/other.mkv"; }, "settings differ in \"input\""},
        {[](auto& parts) { Note(parts[1], "input-bytes") = "9001"; }, "settings differ in \"input-bytes\""},
        {[](auto& parts) { parts[2].settings.parameters.diffClamp = 60; }, "settings differ in \"clamp\""},
        {[](auto& parts) { parts[2].settings.scale.unit.den = 50; }, "settings differ in \"unit-den\""},
        {[](auto& parts) { Note(parts[0], "media") = "64 0 1 0 0"; }, "p1: the setting \"media\" is damaged"},
        {[](auto& parts) { parts[0].rows.clear(); }, "p1: has no frame, and p2 has"},
        {[](auto& parts) { parts[1].rows.pop_back(); },
         "p3: does not begin with the picture that p2 ends with"},
        {[](auto& parts) { parts[2].rows[0].figures.nLevel = 9; }, "p3: does not begin with the picture"},
        {[](auto& parts) { parts[2].rows[0].place.byteOffset = 9; }, "p3: does not begin with the picture"},
        {[](auto& parts) { Note(parts[2], kFirstPictureNote) = "9"; }, "p3: does not begin with the picture"},
    };
    for (const auto& [change, message] : cases) {
        std::vector<Stats> parts = {Part(1, 0, 2), Part(2, 2, 4), Part(3, 4, 6)};
        change(parts);
        EXPECT_THAT(MessageOf([&] { (void)JoinParts(parts); }), HasSubstr(message));
    }
    EXPECT_EQ(MessageOf([] { (void)JoinParts({Part(1, 0, 2), Part(2, 2, 4), Part(3, 4, 6)}); }), "");
}

TEST(StatsPart, ATableOfAPartDecidesNothing) {
    const Stats part = Part(2, 2, 3);
    std::string text;
    StatsWriter writer(part.settings, [&text](std::string_view block) { text += block; });
    for (const StatsRow& row : part.rows)
        writer.Add(row);
    writer.Finish();
    EXPECT_THAT(text, HasSubstr("\n2,99,52,,,,0,2,200,format,1-part\n3,3,53,,,,1,3,300,unit-num,1\n"));
    const Stats read = ParseStats(text, "p2");
    EXPECT_EQ(read.settings.notes, part.settings.notes);
    EXPECT_EQ(read.rows.size(), 2u);
    text.replace(text.find("53,,,,"), 6, "53,,,1,");
    EXPECT_THAT(MessageOf([&] { (void)ParseStats(text, "p2"); }),
                HasSubstr("p2, line 3: a decision in a part"));
}

} // namespace
