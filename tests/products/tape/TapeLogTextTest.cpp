// Rows as text of either form.
#include "products/tape/TapeLogText.h"
#include "tests/Testing.h"

#include <nlohmann/json.hpp>

namespace {

std::string Write(TapeLogFormat format, const std::string& source, const std::vector<TapeRow>& rows) {
    std::string all;
    TapeLogText text(format, source, [&all](std::string_view piece) { all += piece; });
    for (const TapeRow& row : rows)
        text.Add(row);
    text.End();
    return all;
}

TEST(TapeLogText, BothFormsTellTheSame) {
    TapeRow row;
    row.event = TapeEvent::ConcealedBlocks;
    row.frame = 100;
    row.lastFrame = 109;
    row.frames = 5;
    row.byteOffset = 12'000'000;
    row.system = DvSystem::Lines525;
    row.packs.timecode = DvTimecode{1, 2, 3, 4, true};
    row.packs.time = std::chrono::seconds(3661);
    row.packs.aspect = DvAspect::Letterbox16By9;
    row.packs.audio = DvAudioFormat{32000, 12, 4, true};
    row.size = 7;
    row.blocks = {.fromNext = 3, .unspecified = 4};
    const std::string header =
        "frame,byte_offset,timecode,recording_date,recording_time,aspect,lines,event,size,unit,"
        "frames,last_frame,seconds,detail,audio\r\n";
    EXPECT_EQ(
        Write(TapeLogFormat::Csv, "tape", {row, {}}),
        header +
            "100,12000000,01:02:03;04,,01:01:01,16:9 letterbox,525,concealed blocks,7,blocks,5,109,0.167,"
            "\"from the next frame 3, unspecified 4\",32000 Hz 12 bits 4 "
            "channels\r\n0,,,,,,,recording,,,0,0,,,\r\n");
    EXPECT_EQ(Write(TapeLogFormat::Csv, "tape", {}), header);

    using nlohmann::json;
    EXPECT_EQ(
        json::parse(Write(TapeLogFormat::Json, "a\"b.dv", {row})),
        json::parse(R"({"tape_log": 1, "source": "a\"b.dv", "rows": [{"frame": 100, "byte_offset": 12000000,
                  "timecode": "01:02:03;04", "recording_date": null, "recording_time": "01:01:01",
                  "aspect": "16:9 letterbox", "lines": 525, "event": "concealed blocks", "size": 7, "unit": "blocks",
                  "frames": 5, "last_frame": 109, "seconds": 0.167,
                  "detail": "from the next frame 3, unspecified 4", "audio": "32000 Hz 12 bits 4 channels"}]})"));
    EXPECT_EQ(json::parse(Write(TapeLogFormat::Json, "", {{}, {}})).at("rows").size(), 2u);
    EXPECT_TRUE(json::parse(Write(TapeLogFormat::Json, "no UTF-8: \xFF", {})).at("rows").empty());
}

TEST(TapeLogText, FormatsBySuffix) {
    EXPECT_EQ(TapeLogFormatOf("/a.b/tape.CSV"), TapeLogFormat::Csv);
    EXPECT_EQ(TapeLogFormatOf("tape.json"), TapeLogFormat::Json);
    for (const char* other : {"tape.xml", "csv", "tape.csv.gz", ".json", ""})
        EXPECT_FALSE(TapeLogFormatOf(other)) << other;
}

} // namespace
