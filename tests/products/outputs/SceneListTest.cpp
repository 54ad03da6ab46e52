// Each list, by the rules of its format; EDL and OpenTimelineIO by checkers made from what is published of
// them.
#include "products/outputs/OutputFormats.h"
#include "products/outputs/SceneWriters.h"
#include "reading/base/HostError.h"
#include "tests/Testing.h"
#include "tests/products/outputs/Tables.h"

#include <nlohmann/json.hpp>
#include <pugixml.hpp>

#include <regex>

namespace {

using nlohmann::json;
using Spans = std::vector<std::pair<std::int64_t, std::int64_t>>; // begin and end

TEST(SceneSheets, RowsByRate) {
    const std::string header =
        "Scene Number,Start Frame,Start Timecode,Start Time (seconds),End Frame,End Timecode,"
        "End Time (seconds),Length (frames),Length (timecode),Length (seconds),Method,Source Timecode,"
        "Tape Timecode,Recording Date,Recording Time,Aspect,Audio\r\n";
    SceneTable tape = TableOf({25, 1}, {0, 75, 90'100});
    tape.startTimecode = SourceTimecode{900'000, false, 25};
    tape.scenes[1].tape = {"2004-07-17", "10:30:05", "11:00:00:00", "16:9", "32000 Hz"};
    EXPECT_EQ(SceneSheet(tape),
              header +
                  "1,1,00:00:00.000,0.000,75,00:00:03.000,3.000,75,00:00:03.000,3.000,video,10:00:00:00"
                  ",,,,,\r\n"
                  "2,76,00:00:03.000,3.000,90100,01:00:04.000,3604.000,90025,01:00:01.000,3601.000,video,"
                  "10:00:03:00,11:00:00:00,2004-07-17,10:30:05,16:9,32000 Hz\r\n");
    const std::string none = ",video,,,,,,\r\n";
    // 33.37 and 3336.67 ms.
    EXPECT_EQ(SceneSheet(TableOf({30000, 1001}, {1, 100})),
              header + "1,2,00:00:00.033,0.033,100,00:00:03.337,3.337,99,00:00:03.303,3.303" + none);
    EXPECT_EQ(SceneSheet(VariableTable()),
              header + "1,1,00:00:00.000,0.000,3,00:00:00.090,0.090,3,00:00:00.090,0.090" + none +
                  "2,4,00:00:00.090,0.090,4,00:00:00.100,0.100,1,00:00:00.010,0.010" + none +
                  "3,5,00:00:00.100,0.100,10,00:00:00.510,0.510,6,00:00:00.410,0.410" + none);
}

TEST(SceneJsons, PlacesOfAScene) {
    SceneTable table = TableOf({30000, 1001}, {0, 1800, 3600});
    table.input = kOddName;
    table.startTimecode = SourceTimecode{107'892, true, 30};
    const json list = json::parse(SceneJson(table));
    EXPECT_EQ(list.at("rate"), "30000/1001");
    EXPECT_EQ(list.at("input"), "a,\"b\"; [1] =#\\ \n<c> & \xC3\xA9\xEF\xBF\xBD");
    EXPECT_EQ(list.at("scenes").at(0).at("end"),
              json::parse(R"({"frame": 1800, "time": "3003/50", "seconds": 60.06,
        "timecode": "00:01:00;02", "source_timecode": "01:01:00;02"})"));
    EXPECT_EQ(list.at("scenes").at(1).at("length"), 1800);
    EXPECT_EQ(list.at("constant_rate"), true);
    EXPECT_EQ(json::parse(SceneJson(VariableTable())).at("constant_rate"), false);
}

TEST(FcpxmlList, ClipsOfAFile) {
    SceneTable table = TableOf({30000, 1001}, {0, 75, 3000});
    table.name = kOddName;
    table.pixelAspect = {10, 11};
    table.audio = AudioFormat{2, 44'100};
    table.startTimecode = SourceTimecode{1800, false, 30};
    pugi::xml_document document;
    ASSERT_TRUE(document.load_string(Fcpxml(table).c_str()));
    const std::pair<const char*, const char*> cases[] = {
        {"//format/@frameDuration", "1001/30000s"},
        {"//format/@paspV", "11"},
        {"//asset/@src", "file:///tapes/tape%201.mov"},
        {"//asset/@start", "1801800/30000s"},
        {"//asset/@audioRate", "44100"},
        {"//asset/@name", kPlainName},
        {"/fcpxml/library/event/project/sequence/@duration", "3003000/30000s"},
        {"//spine/asset-clip[1]/@duration", "75075/30000s"},
        {"//spine/asset-clip[2][@ref = //asset/@id]/@offset", "75075/30000s"},
        {"//spine/asset-clip[2]/@start", "1876875/30000s"}};
    for (const auto& [path, value] : cases)
        EXPECT_STREQ(document.select_node(path).attribute().value(), value) << path;
    table.input = "-";
    EXPECT_THROW((void)Fcpxml(table), HostError);
}

TEST(XmemlList, ClipsOfAFile) {
    SceneTable table = TableOf({30000, 1001}, {0, 75, 3000});
    table.scenes.back().start = {100, 100 * 1001 * 33, -1}; // what is between is in no scene
    table.name = kOddName;
    table.width = 720;
    table.height = 480;
    table.pixelAspect = {32, 27}; // 16:9
    table.audio = AudioFormat{2, 44'100};
    table.startTimecode = SourceTimecode{107'892, true, 30};
    pugi::xml_document document;
    ASSERT_TRUE(document.load_string(Xmeml(table).c_str()));
    const std::string video = "/xmeml[@version = 5]/sequence/media/video/track/";
    const std::string file = video + "clipitem[1]/file[@id = 'file-1']/";
    const std::pair<std::string, const char*> cases[] = {
        {"/xmeml/sequence/name", kPlainName},
        {"/xmeml/sequence/duration", "2975"}, // 75 and 2900
        {"/xmeml/sequence/rate/timebase", "30"},
        {"/xmeml/sequence/rate/ntsc", "TRUE"},
        {"/xmeml/sequence/timecode/string", "00:00:00;00"},
        {"//format/samplecharacteristics/pixelaspectratio", "NTSC-601"},
        {"//format/samplecharacteristics/anamorphic", "TRUE"},
        {file + "pathurl", "file://localhost/tapes/tape%201.mov"},
        {file + "duration", "3000"},
        {file + "timecode/string", "01:00:00;00"},
        {file + "timecode/frame", "107892"},
        {file + "timecode/displayformat", "DF"},
        {file + "media/audio/channelcount", "2"},
        {video + "clipitem[1]/out", "75"},
        {video + "clipitem[2]/start", "75"},
        {video + "clipitem[2]/end", "2975"},
        {video + "clipitem[2]/in", "100"},
        {video + "clipitem[2]/out", "3000"},
        {"//audio/track[2]/clipitem[2]/sourcetrack/trackindex", "2"},
        {"//audio/track[2]/clipitem[2]/end", "2975"}};
    for (const auto& [path, value] : cases)
        EXPECT_STREQ(document.select_node(path.c_str()).node().text().get(), value) << path;
    // Each clip is linked to those of its scene on the three tracks, and the file is told once.
    EXPECT_EQ(document.select_nodes("//clipitem").size(), 6u);
    for (const auto& link : document.select_nodes("//link")) {
        const pugi::xml_node clip =
            document
                .select_node(
                    ("//clipitem[@id = '" + std::string(link.node().child_value("linkclipref")) + "']")
                        .c_str())
                .node();
        EXPECT_STREQ(clip.child_value("start"), link.node().parent().child_value("start"));
    }
    EXPECT_EQ(document.select_nodes("//link").size(), 6u * 3);
    EXPECT_EQ(document.select_nodes("//pathurl").size(), 1u);

    table.audio.reset();
    ASSERT_TRUE(document.load_string(Xmeml(table).c_str()));
    EXPECT_FALSE(document.select_node("//link | //sequence/media/audio"));
    table.input = "-";
    EXPECT_THROW((void)Xmeml(table), HostError);
    EXPECT_THROW((void)Xmeml(TableOf({47, 2}, {0, 10})), HostError) << "23.5 is no rate of the format";
}

// Counts minute by minute, as a clock would.
std::int64_t CountFrames(const std::string& timecode, int rate, int dropped) {
    static const std::regex kForm("([01]\\d|2[0-3]):([0-5]\\d):([0-5]\\d)([:;])(\\d\\d)");
    std::smatch part;
    if (!std::regex_match(timecode, part, kForm) || (part[4] == ";") != (dropped != 0))
        throw std::runtime_error("no timecode: " + timecode);
    const int minutes = std::stoi(part[1]) * 60 + std::stoi(part[2]);
    std::int64_t frames = std::stoi(part[3]) * rate + std::stoi(part[5]);
    if (std::stoi(part[5]) >= rate || (minutes % 10 != 0 && frames < dropped))
        throw std::runtime_error("no such number: " + timecode);
    for (int minute = 1; minute <= minutes; ++minute)
        frames += rate * 60 - (minute % 10 != 0 ? dropped : 0);
    return frames;
}

Spans ReadEdl(const std::string& text, int rate, int dropped) {
    static const std::regex kHead("TITLE: .{1,70}\r\nFCM: (NON-)?DROP FRAME\r\n");
    static const std::regex kEvent("(\\d{3,})  (\\w{2,8}) +V     C        (\\S+) (\\S+) (\\S+) (\\S+)\r\n"
                                   "\\* FROM CLIP NAME: (.+)\r\n");
    std::smatch part;
    if (!std::regex_search(text, part, kHead, std::regex_constants::match_continuous))
        throw std::runtime_error("no head: " + text);
    EXPECT_EQ(part[1].matched, dropped == 0);
    const std::int64_t day = 144 * (rate * 600 - 9 * dropped);
    std::int64_t record = 6 * (rate * 600 - 9 * dropped); // one o'clock
    Spans events;
    for (auto rest = part.suffix().first; rest != text.end(); rest = part.suffix().first) {
        if (!std::regex_search(rest, text.end(), part, kEvent, std::regex_constants::match_continuous))
            throw std::runtime_error("no event: " + std::string(rest, text.end()));
        EXPECT_EQ(std::stoul(part[1]), events.size() + 1);
        events.emplace_back(CountFrames(part[3], rate, dropped), CountFrames(part[4], rate, dropped));
        EXPECT_EQ(CountFrames(part[5], rate, dropped), record);
        record = (record + day + events.back().second - events.back().first) % day;
        EXPECT_EQ(CountFrames(part[6], rate, dropped), record);
    }
    return events;
}

TEST(EdlList, CountsAtEveryRate) {
    const struct {
        Ratio rate;
        int numbers;
        int dropped;
        std::optional<SourceTimecode> source;
        std::int64_t start; // of frame 0, in frames of timecode
    } cases[] = {{{24000, 1001}, 24, 0, {}, 0},
                 {{30000, 1001}, 30, 2, {}, 0},
                 {{2997, 100}, 30, 2, {}, 0},
                 {{50, 1}, 50, 0, {}, 0},
                 {{60000, 1001}, 60, 4, {}, 0},
                 {{25, 1}, 25, 0, {{900'000, false, 25}}, 900'000},
                 {{30000, 1001}, 30, 0, {{1800, false, 30}}, 1800},
                 {{60000, 1001}, 60, 4, {{1800, true, 30}}, 3600},                        // half the file's
                 {{25, 1}, 25, 0, {{2'159'976, false, 25}}, 2'159'976 - 24 * 3600 * 25}}; // over midnight
    for (const auto& each : cases) {
        // Minutes, the second and the eleventh, begin with the last four at 29.97 and 59.94.
        SceneTable table = TableOf(each.rate, {24, 25, 1799, 1800, 3600, 17'982, 35'964});
        table.startTimecode = each.source;
        Spans expected;
        for (const SceneSpan& scene : table.scenes)
            expected.emplace_back(each.start + scene.start.frame, each.start + scene.end.frame);
        EXPECT_EQ(ReadEdl(Edl(table), each.numbers, each.dropped), expected) << each.rate.Value();
    }
    EXPECT_THROW((void)Edl(VariableTable()), HostError);
    EXPECT_THROW((void)Edl(TableOf({1000, 33}, {0, 10})), HostError);
}

TEST(EdlList, NamesAndManyEvents) {
    std::vector<std::int64_t> frames(1002);
    std::iota(frames.begin(), frames.end(), 0);
    SceneTable table = TableOf({25, 1}, frames);
    EXPECT_THAT(Edl(table), HasSubstr("\r\n001  AX       V     C        00:00:00:00 00:00:00:01 01:00:00:00 "
                                      "01:00:00:01\r\n* FROM CLIP NAME: tape 1.mov\r\n"));
    table.name = std::string(69, 'x') + "\xC3\xA9";
    table.input = kOddName;
    table.startTimecode = SourceTimecode{};
    EXPECT_THAT(ReadEdl(Edl(table), 25, 0), SizeIs(1001));
    for (const std::string& line :
         {"TITLE: " + std::string(69, 'x'), std::string("* FROM CLIP NAME: ") + kPlainName})
        EXPECT_THAT(Edl(table), HasSubstr(line + "\r\n"));
    EXPECT_THAT(Edl(table), HasSubstr("\r\n1001  XXXXXXXX V "));
}

// Each object has exactly the fields of its schema, and numbers of the kind that readers insist on.
void CheckSchemas(const json& value) {
    static const std::map<std::string, std::string> kFields = {
        {"Timeline.1", "global_start_time metadata name tracks "},
        {"Stack.1", "children effects markers metadata name source_range "},
        {"Track.1", "children effects kind markers metadata name source_range "},
        {"Clip.1", "effects markers media_reference metadata name source_range "},
        {"ExternalReference.1", "available_range metadata name target_url "},
        {"MissingReference.1", "available_range metadata name "},
        {"TimeRange.1", "duration start_time "},
        {"RationalTime.1", "rate value "}};
    std::string fields;
    for (const auto& [name, field] : value.items()) {
        fields += name == "OTIO_SCHEMA" ? "" : name + ' ';
        EXPECT_TRUE((name != "rate" && name != "value") || field.is_number_float()) << value;
        for (const json& each : field.is_array() ? field : json::array({field}))
            if (each.is_object() && name != "metadata")
                CheckSchemas(each);
    }
    EXPECT_EQ(fields, kFields.at(value.at("OTIO_SCHEMA")));
}

Spans ReadOtio(const SceneTable& table, std::size_t track = 0) {
    const json timeline = json::parse(Otio(table));
    CheckSchemas(timeline);
    const auto spanOf = [&table](const json& range) {
        EXPECT_EQ(range.at("start_time").at("rate"), table.scale.rate.Value());
        EXPECT_EQ(range.at("duration").at("rate"), table.scale.rate.Value());
        const std::int64_t begin = range.at("start_time").at("value");
        return std::pair(begin, begin + range.at("duration").at("value").get<std::int64_t>());
    };
    Spans spans;
    for (const json& clip : timeline.at("tracks").at("children").at(track).at("children")) {
        spans.push_back(spanOf(clip.at("source_range")));
        const auto media = spanOf(clip.at("media_reference").at("available_range"));
        EXPECT_LE(media.first, spans.back().first);
        EXPECT_GE(media.second, spans.back().second);
    }
    return spans;
}

TEST(OtioList, ClipsOfAFile) {
    SceneTable table = TableOf({30000, 1001}, {0, 75, 100});
    table.input = std::string("/tapes/") + kOddName;
    table.startTimecode = SourceTimecode{1800, true, 30};
    table.audio = AudioFormat{};
    for (const std::size_t track : {0u, 1u})
        EXPECT_EQ(ReadOtio(table, track), (Spans{{1800, 1875}, {1875, 1900}}));
    const json clip = json::parse(Otio(table)).at("/tracks/children/1/children/1"_json_pointer);
    EXPECT_EQ(clip.at("name"), "tape 1 002");
    EXPECT_EQ(clip.at("media_reference").at("target_url"),
              "file:///tapes/a%2C%22b%22%3B%20%5B1%5D%20%3D%23%5C%20%0A%3Cc%3E%20%26%20%C3%A9%FF");

    // At 40 ms a frame 90, 100 and 510 ms are nearest to frames 2, 3 (from its half on) and 13.
    table = VariableTable();
    table.input = "-";
    EXPECT_EQ(ReadOtio(table), (Spans{{0, 2}, {2, 3}, {3, 13}}));
    table.scenes[1].end.time = table.scenes[2].start.time = 95; // nothing is left of the second scene
    EXPECT_EQ(ReadOtio(table), (Spans{{0, 2}, {2, 13}}));
}

// Of two scenes the second one's; where a list has nothing in its place, what stands there without names.
TEST(SceneNames, StandInAllLists) {
    SceneTable table = TableOf({25, 1}, {0, 60, 100});
    table.scenes[1].name = "a=\"b\", <c>";
    const std::pair<std::string, std::string> cases[] = {
        {SceneSheet(table), ",Audio,Name\r\n"},
        {SceneSheet(table), ",video,,,,,,,\r\n"},
        {SceneSheet(table), ",video,,,,,,,\"a=\"\"b\"\", <c>\"\r\n"},
        {SceneJson(table), "\"method\": \"video\",\n      \"name\": \"a=\\\"b\\\", <c>\",\n      \"start\""},
        {Edl(table), "* FROM CLIP NAME: tape 1.mov\r\n* COMMENT: a=\"b\", <c>\r\n"},
        {Otio(table), "\"name\": \"tape 1 001\""},
        {Otio(table), "\"name\": \"a=\\\"b\\\", <c>\""},
        {MetadataChapters(table), "\ntitle=Scene 1\n"},
        {MetadataChapters(table), "\ntitle=a\\=\"b\", <c>\n"},
        {MatroskaChapters(table), "<ChapterString>a=&quot;b&quot;, &lt;c&gt;<"}};
    for (const auto& [list, part] : cases)
        EXPECT_THAT(list, HasSubstr(part));
}

// Pictures begin one and a half seconds after the audio.
TEST(Chapters, CountFromTheStartOfTheFile) {
    SceneTable table = TableOf({25, 1}, {0, 60, 100});
    table.delay = 1'500'000;
    EXPECT_THAT(MetadataChapters(table), HasSubstr("TIMEBASE=1/1000000\nSTART=1500000\nEND=3900000\n"));
    EXPECT_THAT(MatroskaChapters(table), HasSubstr("<ChapterTimeStart>00:00:03.900000000<"));
}

TEST(QpFiles, ForceAKeyFrameAtEachScene) {
    EXPECT_EQ(QpFile(TableOf({30000, 1001}, {0, 20, 33, 60})), "0 I -1\n20 I -1\n33 I -1\n");
}

TEST(OutputFormatChoice, BySuffix) {
    for (const OutputFormat& format : OutputFormats()) {
        EXPECT_EQ(FormatByName(format.name), &format);
        for (const std::string_view suffix : format.suffixes)
            EXPECT_EQ(FormatBySuffix("dir.edl/a" + std::string(suffix)), &format);
    }
    EXPECT_EQ(FormatBySuffix("a.Chapters.XML"), FormatByName("mkvchapters"));
    for (const char* path : {"a.xml", "a.txt", "a.csv/", "dir/.csv", "csv"})
        EXPECT_EQ(FormatBySuffix(path), nullptr) << path;
}

} // namespace
