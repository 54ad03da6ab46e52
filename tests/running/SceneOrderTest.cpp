// From what each filter finds to the scenes that are told: joined, in order, none too short, none too late.
#include "running/run/SceneMerge.h"
#include "running/run/ShortScenes.h"
#include "tests/Testing.h"

namespace {

constexpr std::int64_t kEnd = std::numeric_limits<std::int64_t>::max();

std::vector<std::string> Taken(SceneMerge& merge, std::int64_t end) {
    std::vector<std::string> scenes;
    merge.Take(end, [&](std::int64_t position, const std::string& method) {
        scenes.push_back(std::to_string(position) + ' ' + method);
    });
    return scenes;
}

TEST(SceneMerge, WaitsForTheLastToFindAScene) {
    SceneMerge merge({"timestamp", "video"});
    merge.Add(0, 0);
    merge.Add(0, 7);
    EXPECT_THAT(Taken(merge, 0), ElementsAre());
    merge.Add(1, 0); // found later, at the same place
    merge.Add(1, 5); // and one before what is there already
    EXPECT_THAT(Taken(merge, 6), ElementsAre("0 timestamp+video", "5 video"));
    EXPECT_THAT(Taken(merge, 7), ElementsAre());
    EXPECT_THAT(Taken(merge, kEnd), ElementsAre("7 timestamp"));
    EXPECT_THAT(Taken(merge, kEnd), ElementsAre());
}

TEST(SceneMerge, WhatOneFilterReportsTwiceStaysTwo) {
    SceneMerge merge({"video", "manual"});
    merge.Add(0, 3);
    merge.Add(0, 3);
    merge.Add(1, 3); // goes with the first that it has not found yet
    EXPECT_THAT(Taken(merge, kEnd), UnorderedElementsAre("3 video", "3 video+manual"));
}

TEST(SceneMerge, ASingleFilterNeedNotWait) {
    SceneMerge merge({"interval"});
    merge.Add(0, 4);
    EXPECT_THAT(Taken(merge, 0), ElementsAre("4 interval"));
}

using Frames = std::vector<std::int64_t>;

struct LengthCase {
    const char* name;
    Frames found; // first frames, and the end
    Frames told;
    const char* least = "10";
    ShortRule rule = ShortRule::Merge;
    Frames left{};              // where what is in no scene begins
    std::int64_t unitsAFrame{}; // above 1 where frames last longer than the rate says
};

constexpr auto kDrop = ShortRule::Drop;
constexpr auto kMergeLast = ShortRule::MergeLast;

const LengthCase kLengths[] = {
    {"LongEnough", {0, 10, 20}, {0, 10}},
    {"ShortOnesBelongToTheOneBefore", {0, 20, 23, 32, 60, 65}, {0, 32}},
    {"TheFirstTakesWhatFollows", {50, 52, 70, 90}, {50, 70}},
    {"TheFirstUntilItIsLongEnough", {0, 3, 6, 12, 60}, {0, 12}},
    {"AllShort", {0, 3, 6}, {0}},
    {"TwoAtOnePlace", {0, 20, 20, 40}, {0, 20}},
    {"TwoAtTheBeginning", {5, 5, 40}, {5}},
    {"TheLastIsShort", {0, 20, 29}, {0}},
    {"DropLeavesThemOut", {0, 20, 23, 40, 60}, {0, 23, 40}, "10", kDrop, {20}},
    {"DropSeveralInARowAndTheLast", {0, 20, 23, 26, 40, 45}, {0, 26}, "10", kDrop, {20, 40}},
    {"DropTheFirst", {0, 9, 19}, {9}, "10", kDrop, {}},
    {"DropAll", {0, 9}, {}, "10", kDrop, {}},
    {"DropTwoAtOnePlace", {0, 20, 20, 40}, {0, 20}, "10", kDrop, {}},
    {"MergeLastKeepsOthers", {0, 3, 20, 23, 32}, {0, 3, 20}, "10", kMergeLast},
    {"MergeLastOfOne", {0, 9}, {0}, "10", kMergeLast},
    {"MergeLastThatIsLongEnough", {0, 3, 13}, {0, 3}, "10", kMergeLast},
    {"SecondsAreFrames", {0, 10, 19, 30}, {0, 19}, "0.4s"},         // 10 of 25 a second
    {"SecondsMeanTheNearestFrame", {0, 10, 20}, {0, 10}, "0.419s"}, // 10.475
    {"TimecodeIsFrames", {0, 35, 69, 110}, {0, 69}, "00:00:01:10"},
    {"AtAVariableRateTimeCounts", {0, 4, 7, 20}, {0, 7}, "0.4s", ShortRule::Merge, {}, 3}, // 4 frames last
                                                                                           // 0.48 s
    {"FramesStayFrames", {0, 4, 14, 30}, {0, 14}, "10", ShortRule::Merge, {}, 3},
};

// Frame after frame: a scene is told with the frame that makes it long enough, or with the next scene.
TEST(ShortScenes, AreJoinedOrLeftOutAsSoonAsTheyAreKnown) {
    for (const LengthCase& each : kLengths) {
        SCOPED_TRACE(each.name);
        Frames told;
        Frames left;
        std::int64_t now = 0;
        const auto placeOf = [&](std::int64_t frame) {
            return FilePlace{frame, frame * std::max<std::int64_t>(each.unitsAFrame, 1), -1};
        };
        ShortScenes scenes(
            {ParseTimePoint(each.least), each.rule}, {},
            [&](const FoundScene& scene) {
                EXPECT_EQ(scene.number, std::ssize(told) + 1);
                if (!told.empty() && std::string_view(each.least) == "10" && each.rule != kMergeLast) {
                    EXPECT_EQ(now, scene.place.frame + 10);
                }
                told.push_back(scene.place.frame);
            },
            [&](std::int64_t sample, const FilePlace& place) {
                EXPECT_EQ(sample, place.frame);
                left.push_back(sample);
            });
        const std::int64_t end = each.found.back();
        std::size_t next = 0;
        for (now = each.found.front(); now <= end; ++now) {
            for (; next + 1 < each.found.size() && each.found[next] == now; ++next)
                scenes.Add({0, now, now, placeOf(now), "video"});
            scenes.Settle(placeOf(now));
        }
        scenes.Finish(placeOf(end));
        EXPECT_EQ(told, each.told);
        EXPECT_EQ(left, each.left);
        EXPECT_EQ(scenes.LeftOut(), std::ssize(each.found) - 1 - std::ssize(each.told));
    }
}

TEST(ShortScenes, AllStayWithoutALimit) {
    Frames told;
    ShortScenes scenes({}, {}, [&](const FoundScene& scene) { told.push_back(scene.place.frame); }, {});
    for (const std::int64_t frame : {0, 1, 1, 2})
        scenes.Add({0, frame, frame, {frame, frame, -1}, "video"});
    EXPECT_THAT(told, ElementsAre(0, 1, 1, 2));
}

} // namespace
