// Tape logs of frames with any packs, block states and gaps: rows in order, and valid text.
#include "fuzz/Input.h"
#include "products/tape/TapeLog.h"

#include <nlohmann/json.hpp>

using namespace scenedetect;
using fuzz::Require;

namespace {

constexpr int kMostFrames = 200;
constexpr std::size_t kMostBytes = 400;

// One instruction: what one field of the frames that follow says.
void Change(int kind, fuzz::Input& input, TapeFrame& frame) {
    std::array<std::uint8_t, 5> bytes{};
    const auto taken = input.TakeBytes(bytes.size());
    std::ranges::copy(taken, bytes.begin());
    const DifPack pack(bytes);
    switch (kind) {
    case 0:
        frame.packs.timecode = TimecodeOf(pack, frame.system);
        break;
    case 1:
        frame.packs.date = DateOf(pack);
        break;
    case 2:
        frame.packs.time = TimeOf(pack);
        break;
    case 3:
        frame.packs.aspect = AspectOf(pack);
        frame.packs.audio = AudioFormatOf(pack);
        break;
    case 4:
        frame.packs.isRecordingStart = bytes[0] % 2 != 0;
        frame.packs.isRecordingEnd = bytes[1] % 2 != 0;
        break;
    case 5:
        frame.blocks = {bytes[0], bytes[1], bytes[2], bytes[3], bytes[4]};
        break;
    case 6:
        frame.damagedBlocks = bytes[0];
        frame.firstDamaged = bytes[1];
        frame.audio = {bytes[2], bytes[3] % 2 != 0};
        break;
    default: {
        TapeFrame other;
        other.place = frame.place;
        other.system = bytes[0] % 2 != 0 ? DvSystem::Lines625 : DvSystem::Lines525;
        frame = other;
    }
    }
}

// The clock and the timecode of the next frame go on, as on most tapes.
void GoOn(TapeFrame& frame) {
    auto& packs = frame.packs;
    ++frame.place.frame;
    frame.place.byteOffset += static_cast<std::int64_t>(DvFrameBytes(frame.system));
    const int rate = DvTimecodeRate(frame.system);
    if (packs.time && frame.place.frame % rate == 0)
        packs.time = (*packs.time + std::chrono::seconds(1)) % std::chrono::days(1);
    if (packs.timecode && ++packs.timecode->frames >= rate)
        packs.timecode->frames = 0;
}

void CheckRows(const std::string& text, std::int64_t frames) {
    const auto log = nlohmann::json::parse(text);
    std::int64_t before = 0;
    std::int64_t inRecordings = 0;
    for (const auto& row : log.at("rows")) {
        const auto frame = row.at("frame").get<std::int64_t>();
        Require(frame >= before && row.at("last_frame") >= frame && row.at("frames") >= 0);
        before = frame;
        const auto event = row.at("event").get<std::string>();
        if (event == "recording" || event == "recording continued") {
            // One begins where the other ends.
            Require(inRecordings == 0 || frame == inRecordings);
            inRecordings = row.at("last_frame").get<std::int64_t>() + 1;
        }
    }
    Require(inRecordings == frames);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::Input input(data, std::min(size, kMostBytes));
    std::string text;
    TapeLog log(TapeLogFormat::Json, "fuzz", [&text](std::string_view piece) { text += piece; });
    TapeFrame frame;
    std::int64_t frames = 0;
    for (int noted = 0; !input.IsEmpty() && noted < kMostFrames;) {
        const auto instruction = input.Take<std::uint8_t>();
        if (instruction < 144) {
            Change(instruction % 8, input, frame);
        } else if (instruction < 160) {
            const auto kind = static_cast<IrregularityKind>(instruction % 6);
            const std::int64_t lost =
                kind == IrregularityKind::DamagedBlocks ? 0 : input.Take<std::uint8_t>();
            log.Note(Irregularity{frame.place.frame, frame.place.byteOffset, input.Take<std::uint16_t>(),
                                  kind, lost});
            frame.place.frame += lost;
        } else {
            for (int i = instruction - 159; i > 0; --i, ++noted) {
                log.Note(frame);
                GoOn(frame);
                frames = frame.place.frame;
            }
        }
    }
    log.Finish();
    CheckRows(text, frames);
    return 0;
}
