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

struct LengthCase {
    const char* name;
    std::vector<std::int64_t> found; // first frames, and the end
    std::vector<std::int64_t> told;
};

// With 10 frames at least.
const LengthCase kLengths[] = {
    {"LongEnough", {0, 10, 20}, {0, 10}},
    {"ShortOnesBelongToTheOneBefore", {0, 20, 23, 32, 60, 65}, {0, 32}},
    {"TheFirstTakesWhatFollows", {50, 52, 70, 90}, {50, 70}},
    {"TheFirstUntilItIsLongEnough", {0, 3, 6, 12, 60}, {0, 12}},
    {"AllShort", {0, 3, 6}, {0}},
    {"TwoAtOnePlace", {0, 20, 20, 40}, {0, 20}},
    {"TwoAtTheBeginning", {5, 5, 40}, {5}},
    {"TheLastIsShort", {0, 20, 29}, {0}},
};

// Frame after frame: a scene is told with the frame that makes it long enough.
TEST(ShortScenes, AreLeftOutAsSoonAsTheyAreKnown) {
    for (const LengthCase& each : kLengths) {
        SCOPED_TRACE(each.name);
        std::vector<std::int64_t> told;
        std::int64_t now = 0;
        ShortScenes scenes(10, [&](const FoundScene& scene) {
            EXPECT_EQ(scene.number, std::ssize(told) + 1);
            if (!told.empty()) {
                EXPECT_EQ(now, scene.place.frame + 10);
            }
            told.push_back(scene.place.frame);
        });
        const std::int64_t end = each.found.back();
        std::size_t next = 0;
        for (now = each.found.front(); now <= end; ++now) {
            for (; next + 1 < each.found.size() && each.found[next] == now; ++next) {
                FoundScene scene;
                scene.place.frame = now;
                scenes.Add(scene);
            }
            scenes.Settle(now);
        }
        EXPECT_EQ(told, each.told);
        EXPECT_EQ(scenes.LeftOut(), std::ssize(each.found) - 1 - std::ssize(each.told));
    }
}

TEST(ShortScenes, AllStayWithoutALimit) {
    std::vector<std::int64_t> told;
    ShortScenes scenes(0, [&](const FoundScene& scene) { told.push_back(scene.place.frame); });
    for (const std::int64_t frame : {0, 1, 1, 2}) {
        FoundScene scene;
        scene.place.frame = frame;
        scenes.Add(scene);
    }
    EXPECT_THAT(told, ElementsAre(0, 1, 1, 2));
}

} // namespace
