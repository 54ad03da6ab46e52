// Tape logs of frames with packs, block states and holes at random: rows in order, and whole text.
#include "fuzz/Input.h"
#include "products/tape/TapeLog.h"
#include "tests/DvFrame.h"

#include <nlohmann/json.hpp>

#include <optional>

using namespace scenedetect;
using fuzz::Require;
using testing_support::DvFrame;

namespace {

constexpr int kMostFrames = 400;

// One instruction: packs or bytes to change, frames to pass over, or a hole.
void Change(fuzz::Input& input, DvFrame& frame) {
    testing_support::Pack pack{};
    const auto bytes = input.TakeBytes(pack.size());
    std::copy(bytes.begin(), bytes.end(), pack.begin());
    switch (input.Take<std::uint8_t>() % 5) {
    case 0:
        pack[0] = kPackTimecode;
        frame.SetTimecode(pack);
        return;
    case 1:
        pack[0] = kPackRecordingDate;
        frame.SetDate(pack);
        return;
    case 2:
        pack[0] = kPackRecordingTime;
        frame.SetTime(pack);
        return;
    case 3:
        frame.SetMarks(pack[2]);
        return;
    default: {
        auto& all = frame.Bytes();
        const std::size_t at = input.Take<std::uint32_t>() % (all.size() - pack.size());
        std::copy(pack.begin(), pack.end(), all.begin() + static_cast<std::ptrdiff_t>(at));
    }
    }
}

void CheckRows(const std::string& text, std::int64_t frames) {
    const auto log = nlohmann::json::parse(text);
    std::int64_t before = 0;
    std::int64_t inStretches = 0;
    for (const auto& row : log.at("rows")) {
        const auto frame = row.at("frame").get<std::int64_t>();
        Require(frame >= before && row.at("last_frame") >= frame && row.at("frames") >= 0);
        before = frame;
        const auto event = row.at("event").get<std::string>();
        if (event == "recording" || event == "recording continued") {
            // One begins where the other ends.
            Require(inStretches == 0 || frame == inStretches);
            inStretches = row.at("last_frame").get<std::int64_t>() + 1;
        }
    }
    Require(inStretches == frames);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::Input input(data, size);
    std::string text;
    TapeLog log(TapeLogFormat::Json, "fuzz", [&text](std::string_view piece) { text += piece; });
    DvFrame frame(input.Take<std::uint8_t>() % 2 != 0);
    FilePlace place;
    std::int64_t frames = 0;
    for (int noted = 0; !input.IsEmpty() && noted < kMostFrames;) {
        const auto instruction = input.Take<std::uint8_t>();
        if (instruction < 128) {
            Change(input, frame);
        } else if (instruction < 144) {
            frame = DvFrame(instruction % 2 != 0);
        } else if (instruction < 160) {
            const auto kind = static_cast<IrregularityKind>(instruction % 6);
            const std::int64_t lost =
                kind == IrregularityKind::DamagedBlocks ? 0 : input.Take<std::uint8_t>();
            log.Note(Irregularity{place.frame, place.byteOffset, input.Take<std::uint16_t>(), kind, lost});
            place.frame += lost;
        } else {
            for (int i = instruction - 159; i > 0; --i, ++noted) {
                Picture picture;
                picture.Hold(frame.Bytes(), BytesOwner(nullptr, [](void*) {}));
                picture.place = place;
                log.Note(picture);
                frames = ++place.frame;
                place.byteOffset += static_cast<std::int64_t>(frame.Bytes().size());
            }
        }
    }
    log.Finish();
    CheckRows(text, frames);
    return 0;
}
