// Lists of all kinds, and the frames that they mean in a file.
#include "products/listed/ListedScenes.h"

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

// "start-end" of each scene in the file, before it its method where that is not a person's, and its name; or
// the message.
std::string Scenes(const std::string& text, const File& file) try {
    const TimeScale scale = TableOf(file.rate, {0, file.frames}).scale;
    const SceneList list = ParseSceneList(text, "list");
    ListedScenes listed(list, scale, file.first);
    std::string scenes;
    FilePlace place = TableOf(file.rate, {0, file.firstFrame, file.frames}).scenes[1].start;
    for (; place.frame < file.frames; place = PlaceAfter(place, scale)) {
        const auto turn = listed.At(place);
        if ((turn.begins || turn.ends) && scenes.ends_with('-'))
            scenes += std::to_string(place.frame) + ' ';
        if (turn.begins)
            scenes += (turn.begins->method == "manual" ? "" : turn.begins->method + ' ') +
                      (turn.begins->name.empty() ? "" : '"' + turn.begins->name + "\" ") +
                      std::to_string(place.frame) + '-';
    }
    listed.Finish(place);
    return scenes + (scenes.ends_with('-') ? std::to_string(place.frame) + ' ' : "");
} catch (const HostError& error) {
    return error.what();
}

const std::string kHeader =
    "Scene Number,Start Frame,Start Timecode,Start Time (seconds),End Frame,End Timecode,"
    "End Time (seconds),Length (frames)\r\n";
const std::string kJson = R"({"schema": "kxscenes", "version": 1, )";
const File kNtsc{{30000, 1001}, 4000};
// One o'clock, after 3600 x 30 frames less 2 in 54 minutes.
const File kNtscTape{{30000, 1001}, 4000, SourceTimecode{107'892, true, 30}};
const File kMidnight{{25, 1}, 250, SourceTimecode{2'159'950, false, 25}}; // two seconds before it

std::string Event(const std::string& inAndOut, const std::string& kind = "TAPE     V     C       ") {
    return "001  " + kind + ' ' + inAndOut + " 01:00:00:00 01:00:01:00\n";
}

const struct ListCase {
    const char* name;
    std::string list;
    std::string scenes; // or the message
    File file{};
} kLists[] = {
    {"OfOthers",
     "Timecode List:,00:00:02.400,00:00:05.200\r\n" + kHeader +
         "1,1,00:00:00.000,0.000,60,00:00:02.400,2.400,60\r\n2,61,,2.400,250,,10.000,190\r\n",
     "0-60 60-250 "},
    {"OneDeleted", kHeader + "1,1,,,60,,,\n,,,,,,,\n3,131,,,175,,,\n", "0-60 130-175 "},
    {"FramesCountBeforeTimes",
     kHeader + "1,1,,0.000,70,,2.400,\n2,71,,2.400,100,,4.000,\n3,101,,4.000,250,,10.000,\n",
     "0-70 70-100 100-250 "},
    {"TimesAlone", "start time (seconds),Name\n0.0,a\n2.4,\"b,c\"\n", "\"a\" 0-60 \"b,c\" 60-250 "},
    {"TimesOfNtsc", "Start Timecode\n00:00:00.000\n00:01:00;02\n", "0-1800 1800-4000 ", kNtsc},
    {"AsPrinted", "scene,frame,timecode,seconds,method\n1,0,x,0.000,video\n2,60,x,2.400,timestamp+video\n",
     "video 0-60 timestamp+video 60-250 "},
    {"Bare", "\xEF\xBB\xBF\x31\x30\n2.4s\n\n00:00:05:05", "10-60 60-130 130-250 "},
    {"BareOfTwoColumns", "0,60\n", "list, line 1: a header"},
    {"Empty", "", "list: no scene"},
    {"BrokenNumber", kHeader + "1,1,,,60,,,\n2,sixty,,,,,,\n", "list, line 3: not a time: 'sixty'"},
    {"FrameZero", kHeader + "1,0,,,60,,,\n", "list, line 2: \"0\" is no frame"},
    {"NotSorted", "60\n10\n", "list, line 2: begins no later"},
    {"Overlapping", kHeader + "1,1,,,61,,,\n2,61,,,250,,,\n",
     "list, line 3: begins before the scene before it ends"},
    {"EndsBeforeItBegins", kHeader + "1,61,,,60,,,\n", "list, line 2: ends before it has a frame"},
    {"BeginsBeyondTheEnd", "0\n250\n", "list, line 2: lies beyond the end of the file, which has 250 frames"},
    {"EndsBeyondTheEnd", kHeader + "1,1,,,251,,,\n", "list, line 2: lies beyond"},
    {"OfAnotherRate", kHeader + "1,1,,0.000,60,,2.002,\n2,61,,2.002,90,,3.003,\n",
     "list: frames and seconds do not"},
    {"RangeInTheMiddle", "0\n60\n130\n", "100-130 130-250 ", {{25, 1}, 250, {}, 100}},
    {"Json",
     kJson + R"("rate": "25/1", "scenes": [{"start": {"frame": 0}, "end": {"frame": 60}, "method": "video"},
        {"start": {"seconds": 5.2}, "name": "two\nlines"}]})",
     "video 0-60 \"two lines\" 130-250 "},
    {"JsonOfAnotherRate", kJson + R"("rate": "30000/1001", "scenes": [{"start": {"frame": 0}}]})",
     "list: is of a video of 30000/1001"},
    {"JsonOfAnotherKind", "{}", "list: no scene list of version 1"},
    {"JsonWithoutAStart", kJson + R"("scenes": [{"end": {"frame": 9}}]})", "list, scene 1: "},
    {"Edl",
     "TITLE: x\nFCM: NON-DROP FRAME\n\n" + Event("00:00:00:10 00:00:02:10") + "* FROM CLIP NAME: a.mov\n" +
         "* COMMENT: The end of it\r\n* COMMENT: And more\n" + Event("00:00:05:05 00:00:10:00") +
         Event("00:00:00:00 00:00:01:00", "BL       V     C       ") + "* COMMENT: black\n",
     "\"The end of it\" 10-60 130-250 "},
    {"EdlOfDropFrameByItsHead", "FCM: DROP FRAME\n" + Event("00:00:10:00 00:01:00:02"), "300-1800 ", kNtsc},
    {"EdlOfTheTapesTimecode", Event("01:00:00;00 01:01:00;02"), "0-1800 ", kNtscTape},
    {"EdlOverMidnight", Event("23:59:59:00 00:00:01:00"), "25-75 ", kMidnight},
    {"EdlWithSoundBlackAndADissolve",
     Event("00:00:09:00 00:00:10:00", "TAPE     A     C       ") +
         Event("00:00:00:00 00:00:01:00", "BL       V     C       ") + Event("00:00:01:00 00:00:01:00") +
         Event("00:00:01:00 00:00:02:00", "TAPE     AA/V  D    025"),
     "25-50 "},
    {"EdlOfTwoReels",
     Event("00:00:00:00 00:00:01:00") + Event("00:00:02:00 00:00:03:00", "OTHER    V     C       "),
     "list, line 2: is of reel OTHER"},
    {"EdlBeforeTheTape", Event("00:00:00;00 00:00:01;00"), "list, line 1: 00:00:00;00 lies before",
     kNtscTape},
    {"EdlWithADroppedNumber", Event("01:01:00;00 01:02:00;02"), "list, line 1: 01:01:00;00 is no number",
     kNtscTape},
    {"EdlWithABrokenEvent", "TITLE: x\n" + Event("00:00:00:00"), "list, line 2: no event"},
};

class Lists : public TestWithParam<ListCase> {};

TEST_P(Lists, MeanFrames) {
    EXPECT_THAT(Scenes(GetParam().list, GetParam().file), StartsWith(GetParam().scenes));
}

INSTANTIATE_TEST_SUITE_P(All, Lists, ValuesIn(kLists), kByName);

} // namespace
