// Lists of all kinds, and the frames that they mean in a file.
#include "products/listed/ListedScenes.h"

#include "products/outputs/SceneWriters.h"
#include "tests/MessageOf.h"
#include "tests/Testing.h"
#include "tests/products/outputs/Tables.h"

namespace {

/// A file: its frames, and its own timecode.
struct File {
    Ratio rate{25, 1};
    std::int64_t frames = 250;
    std::optional<SourceTimecode> first{};
    std::int64_t firstFrame = 0; // of those that are read
};

// "start-end" of each scene in the file, its method where that is not a person's.
std::string Follow(const SceneList& list, const TimeScale& scale, const std::vector<FilePlace>& places,
                   const std::optional<SourceTimecode>& first) {
    ListedScenes listed(list, scale, first);
    std::string text;
    bool isOpen = false;
    const auto end = [&](const FilePlace& place) {
        if (std::exchange(isOpen, false))
            text += std::to_string(place.frame) + ' ';
    };
    for (const FilePlace& place : places) {
        const auto turn = listed.At(place);
        if (turn.begins || turn.ends)
            end(place);
        if (turn.begins) {
            isOpen = true;
            text += (turn.begins->method == "manual" ? "" : turn.begins->method + ' ') +
                    std::to_string(place.frame) + '-';
        }
    }
    const FilePlace last = PlaceAfter(places.back(), scale);
    end(last);
    listed.Finish(last);
    return text;
}

std::string Scenes(const std::string& list, const File& file) {
    const SceneTable table = TableOf(file.rate, {0, file.frames});
    std::vector<FilePlace> places;
    for (std::int64_t frame = file.firstFrame; frame < file.frames; ++frame)
        places.push_back({frame, frame * (table.scenes[0].end.time / file.frames)});
    try {
        return Follow(ParseSceneList(list, "list"), table.scale, places, file.first);
    } catch (const HostError& error) {
        return error.what();
    }
}

const std::string kHeader =
    "Scene Number,Start Frame,Start Timecode,Start Time (seconds),End Frame,End Timecode,"
    "End Time (seconds),Length (frames)\r\n";
const std::string kEvent = "  TAPE     V     C        ";
const std::string kRecord = " 01:00:00:00 01:00:01:00\n";
const File kNtsc{{30000, 1001}, 4000};
// One o'clock, after 3600 x 30 frames less 2 in 54 minutes.
const File kNtscTape{{30000, 1001}, 4000, SourceTimecode{107'892, true, 30}};

const struct ListCase {
    const char* name;
    std::string list;
    File file;
    std::string scenes; // or the message
} kLists[] = {
    {"OfOthers",
     "Timecode List:,00:00:02.400,00:00:05.200\r\n" + kHeader +
         "1,1,00:00:00.000,0.000,60,00:00:02.400,2.400,60\r\n2,61,00:00:02.400,2.400,250,00:00:10.000,10.000,"
         "190\r\n",
     {},
     "0-60 60-250 "},
    {"OneDeleted", kHeader + "1,1,,,60,,,\n,,,,,,,\n3,131,,,175,,,\n", {}, "0-60 130-175 "},
    {"FramesCountBeforeTimes",
     kHeader + "1,1,00:00:00.000,0.000,70,00:00:02.400,2.400,\n"
               "2,71,00:00:02.400,2.400,100,00:00:04.000,4.000,\n"
               "3,101,00:00:04.000,4.000,250,00:00:10.000,10.000,\n",
     {},
     "0-70 70-100 100-250 "},
    {"TimesAlone", "start time (seconds),Name\n0.0,a\n2.4,\"b,c\"\n", {}, "0-60 60-250 "},
    {"TimesOfNtsc", "Start Timecode\n00:00:00.000\n00:01:00;02\n", kNtsc, "0-1800 1800-4000 "},
    {"AsPrinted",
     "scene,frame,timecode,seconds,method\n1,0,00:00:00:00,0.000,video\n2,60,x,2.400,timestamp+video\n",
     {},
     "video 0-60 timestamp+video 60-250 "},
    {"BareFrames",
     "\xEF\xBB\xBF"
     "10\n60\n\n130",
     {},
     "10-60 60-130 130-250 "},
    {"BareTimes", "00:00:00:10\n2.4s\n00:00:05.200\n", {}, "10-60 60-130 130-250 "},
    {"BareAsOneColumnWithoutHeader", "0,60\n", {}, "list, line 1: a header"},
    {"NoList", "hello\n", {}, "list, line 1: a header"},
    {"Empty", "", {}, "list: no scene"},
    {"BrokenNumber", kHeader + "1,1,,,60,,,\n2,sixty,,,,,,\n", {}, "list, line 3: not a time: 'sixty'"},
    {"NoStart", kHeader + "1,,,,60,,,\n", {}, "list, line 2: no start"},
    {"FrameZeroWhereTheyCountFromOne", kHeader + "1,0,,,60,,,\n", {}, "list, line 2: \"0\" is no frame"},
    {"NotSorted", "60\n10\n", {}, "list, line 2: begins no later"},
    {"Overlapping",
     kHeader + "1,1,,,61,,,\n2,61,,,250,,,\n",
     {},
     "list, line 3: begins before the scene before it ends"},
    {"EndsBeforeItBegins", kHeader + "1,61,,,60,,,\n", {}, "list, line 2: ends before it has a frame"},
    {"BeginsBeyondTheEnd",
     "0\n250\n",
     {},
     "list, line 2: lies beyond the end of the file, which has 250 frames"},
    {"EndsBeyondTheEnd", kHeader + "1,1,,,251,,,\n", {}, "list, line 2: lies beyond"},
    {"OfAnotherRate",
     kHeader + "1,1,00:00:00.000,0.000,60,00:00:02.002,2.002,\n2,61,00:00:02.002,2.002,90,"
               "00:00:03.003,3.003,\n",
     {},
     "list: frames and seconds do not belong together"},
    {"RangeInTheMiddle", "0\n60\n130\n", {{25, 1}, 250, {}, 100}, "100-130 130-250 "},
    {"Json",
     R"({"schema": "kxscenes", "version": 1, "rate": "25/1", "scenes": [
        {"start": {"frame": 0}, "end": {"frame": 60}, "method": "video"}, {"start": {"seconds": 5.2}, "name": "x"}]})",
     {},
     "video 0-60 130-250 "},
    {"JsonOfAnotherRate",
     R"({"schema": "kxscenes", "version": 1, "rate": "30000/1001", "scenes": [{"start": {"frame": 0}}]})",
     {},
     "list: is of a video of 30000/1001"},
    {"JsonOfAnotherKind", "{}", {}, "list: no scene list of version 1"},
    {"JsonCutShort", R"({"schema": )", {}, "list: "},
    {"JsonWithoutAStart",
     R"({"schema": "kxscenes", "version": 1, "scenes": [{"end": {"frame": 9}}]})",
     {},
     "list, scene 1: "},
    {"Edl",
     "TITLE: x\nFCM: NON-DROP FRAME\n\n001" + kEvent + "00:00:00:10 00:00:02:10" + kRecord +
         "* FROM CLIP NAME: a.mov\n002" + kEvent + "00:00:05:05 00:00:10:00" + kRecord,
     {},
     "10-60 130-250 "},
    {"EdlOfDropFrameByItsHead", "FCM: DROP FRAME\n001" + kEvent + "00:00:10:00 00:01:00:02" + kRecord, kNtsc,
     "300-1800 "},
    {"EdlOfTheTapesTimecode", "001" + kEvent + "01:00:00;00 01:01:00;02" + kRecord, kNtscTape, "0-1800 "},
    {"EdlOverMidnight",
     "001" + kEvent + "23:59:59:00 00:00:01:00" + kRecord,
     {{25, 1}, 250, SourceTimecode{2'159'950, false, 25}},
     "25-75 "},
    {"EdlWithSoundBlackAndADissolve",
     "001  TAPE     A     C        00:00:09:00 00:00:10:00" + kRecord +
         "002  BL       V     C        00:00:00:00 00:00:01:00" + kRecord +
         "003  TAPE     V     C        00:00:01:00 00:00:01:00" + kRecord +
         "003  TAPE     AA/V  D    025 00:00:01:00 00:00:02:00" + kRecord,
     {},
     "25-50 "},
    {"EdlOfTwoReels",
     "001" + kEvent + "00:00:00:00 00:00:01:00" + kRecord +
         "002  OTHER    V     C        00:00:02:00 00:00:03:00" + kRecord,
     {},
     "list, line 2: is of reel OTHER"},
    {"EdlBeforeTheTape", "001" + kEvent + "00:00:00;00 00:00:01;00" + kRecord, kNtscTape,
     "list, line 1: 00:00:00;00 lies before"},
    {"EdlWithADroppedNumber", "001" + kEvent + "01:01:00;00 01:02:00;02" + kRecord, kNtscTape,
     "list, line 1: 01:01:00;00 is no number"},
    {"EdlWithABrokenEvent",
     "TITLE: x\n001" + kEvent + "00:00:00:00 00:00:01\n",
     {},
     "list, line 2: no event"},
};

class Lists : public TestWithParam<ListCase> {};

TEST_P(Lists, MeanFrames) {
    EXPECT_THAT(Scenes(GetParam().list, GetParam().file), StartsWith(GetParam().scenes));
}

INSTANTIATE_TEST_SUITE_P(All, Lists, ValuesIn(kLists), kByName);

// What is written is read as it was, also at a variable rate.
TEST(OwnLists, ComeBack) {
    SceneTable varied = VariableTable();
    std::vector<FilePlace> places;
    for (const std::int64_t time : {0, 30, 60, 90, 100, 180, 260, 330, 400, 470})
        places.push_back({std::ssize(places), time});
    for (SceneTable& table : std::vector{varied, TableOf({30000, 1001}, {0, 3, 4, 10})}) {
        for (FilePlace& place : places)
            if (table.scale.rate.den != 1)
                place.time = place.frame * (table.scenes[0].end.time / 3);
        for (auto* const write : {SceneSheet, SceneJson})
            EXPECT_EQ(Follow(ParseSceneList(write(table), "list"), table.scale, places, {}),
                      "video 0-3 video 3-4 video 4-10 ")
                << write(table);
    }
}

} // namespace
