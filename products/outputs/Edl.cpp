#include "products/outputs/NameText.h"
#include "products/outputs/SceneTable.h"
#include "products/outputs/SceneWriters.h"
#include "reading/base/HostError.h"

#include <algorithm>
#include <cstdio>

namespace scenedetect {
namespace {

// What tapes and importers begin a programme with.
constexpr TimecodeFields kRecordStart{.hours = 1};

void RequireCountable(const SceneTable& table) {
    if (!HasConstantRate(table))
        throw HostError(table.input + ": an EDL counts frames at one rate, and this file's rate varies; "
                                      "choose another format, or make the file's rate constant first");
    constexpr std::int32_t kMostFrames = 100; // the field has two digits
    (void)NominalRateOf(table, "an EDL", kMostFrames);
}

// The first characters of the name that reel names may have. "AX" stands for media that no tape holds.
std::string ReelName(const SceneTable& table) {
    constexpr std::size_t kMostCharacters = 8;
    std::string reel;
    for (const char byte : table.name) {
        const char upper = byte >= 'a' && byte <= 'z' ? static_cast<char>(byte - 'a' + 'A') : byte;
        if ((upper >= 'A' && upper <= 'Z') || (upper >= '0' && upper <= '9'))
            reel += upper;
    }
    reel.resize(std::min(reel.size(), kMostCharacters));
    // "BL" is black.
    return !table.startTimecode || reel.empty() || reel == "BL" ? "AX" : reel;
}

// A line of the format has 80 columns; cut between characters, not within.
std::string Title(const std::string& name) {
    constexpr std::size_t kMostBytes = 70;
    std::string title = PlainName(name);
    if (title.size() <= kMostBytes)
        return title;
    std::size_t end = kMostBytes;
    while (end > 0 && (static_cast<unsigned char>(title[end]) & 0xC0) == 0x80)
        --end;
    title.resize(end);
    return title;
}

} // namespace

std::string Edl(const SceneTable& table) {
    RequireCountable(table);
    const FrameNumbering numbering = SourceNumbering(table);
    const auto timecode = [&numbering](std::int64_t frame) {
        return FrameTimecode(frame % numbering.FramesPerDay(), numbering);
    };
    const std::string reel = ReelName(table);
    const std::string clip = table.input == "-" ? PlainName(table.name) : FileName(table.input);
    const std::int64_t sourceStart = SourceStart(table);
    std::int64_t record = FrameOfTimecode(kRecordStart, numbering).value_or(0);

    std::string text = "TITLE: " + Title(table.name) +
                       (numbering.IsDropFrame() ? "\r\nFCM: DROP FRAME\r\n" : "\r\nFCM: NON-DROP FRAME\r\n");
    for (std::size_t i = 0; i < table.scenes.size(); ++i) {
        const SceneSpan& scene = table.scenes[i];
        char event[64];
        std::snprintf(event, sizeof event, "%03zu  %-8s V     C        ", i + 1, reel.c_str());
        text += event + timecode(sourceStart + scene.start.frame) + ' ' +
                timecode(sourceStart + scene.end.frame) + ' ' + timecode(record) + ' ' +
                timecode(record + scene.FrameCount()) + "\r\n* FROM CLIP NAME: " + clip + "\r\n";
        if (!scene.name.empty())
            text += "* COMMENT: " + scene.name + "\r\n";
        record += scene.FrameCount();
    }
    return text;
}

} // namespace scenedetect
