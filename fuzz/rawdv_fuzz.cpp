// Raw DV captures put together from whole frames, pieces, damage and foreign bytes.
#include "engine/Dif.h"
#include "fuzz/Input.h"
#include "reading/base/Console.h"
#include "reading/base/HostError.h"
#include "reading/readers/Picture.h"
#include "reading/readers/RawDvReader.h"
#include "tests/DvFrame.h"
#include "tests/MemoryInput.h"

#include <algorithm>

using namespace scenedetect;
using fuzz::Require;

namespace {

constexpr std::size_t kLargestStream = 4 * kDifFrameBytes625;

// The input is a list of instructions.
std::vector<std::uint8_t> MakeStream(fuzz::Input& input) {
    std::vector<std::uint8_t> stream;
    while (!input.IsEmpty() && stream.size() < kLargestStream) {
        const auto instruction = input.Take<std::uint8_t>() % 5;
        switch (instruction) {
        case 0:
        case 1:
            // Timecodes go on, with jumps where something was cut off between.
            testing_support::AppendDifFrame(stream, instruction == 1,
                                            static_cast<int>(stream.size() / 40'000));
            break;
        case 2: // cut the end off
            stream.resize(stream.size() - std::min<std::size_t>(stream.size(), input.Take<std::uint16_t>()));
            break;
        case 3: { // foreign bytes
            const auto bytes = input.TakeBytes(input.Take<std::uint8_t>());
            stream.insert(stream.end(), bytes.begin(), bytes.end());
            break;
        }
        default: { // damage: a byte, and as many of the same behind it as the odd ones of the place tell
            const std::size_t at = input.Take<std::uint32_t>();
            const auto value = input.Take<std::uint8_t>();
            if (stream.empty())
                break;
            const auto first = stream.begin() + static_cast<std::ptrdiff_t>(at % stream.size());
            const std::ptrdiff_t length = at % 2 == 0 ? 1 : static_cast<std::ptrdiff_t>(at >> 12);
            std::fill(first, first + std::min(length, stream.end() - first), value);
        }
        }
    }
    return stream;
}

DvSystem IdentifySystem(std::size_t bytes) {
    return bytes == kDifFrameBytes625 ? DvSystem::Lines625 : DvSystem::Lines525;
}

void ReadAll(const std::vector<std::uint8_t>& stream) {
    static Console console("rawdv_fuzz");
    const DamageLog damage(console, "capture", [&stream](const Irregularity& each) {
        Require(each.frame >= 0 && each.frames >= 0 && each.bytes >= 0 && each.byteOffset >= 0);
        Require(static_cast<std::size_t>(each.byteOffset) <= stream.size());
        Require(!IrregularityText(each).empty());
    });
    RawDvReader reader(std::make_unique<testing_support::MemoryInput>(stream), damage);
    Picture picture;
    FilePlace before{-1, -1, -1};
    while (reader.Next(picture)) {
        const std::size_t bytes = picture.Bytes().size();
        Require(bytes == kDifFrameBytes525 || bytes == kDifFrameBytes625);
        Require(picture.format.height == (bytes == kDifFrameBytes625 ? 576 : 480));
        Require(picture.place.frame > before.frame && picture.place.time > before.time);
        Require(picture.place.byteOffset > before.byteOffset);
        Require(static_cast<std::size_t>(picture.place.byteOffset) + bytes <= stream.size());
        Require(std::equal(picture.Bytes().begin(), picture.Bytes().end(),
                           stream.begin() + static_cast<std::ptrdiff_t>(picture.place.byteOffset)));
        // What is handed out is a frame for the most part.
        Require(CheckDvFrame(picture.Bytes(), IdentifySystem(bytes)).IsPlausible());
        before = picture.place;
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::Input input(data, size);
    try {
        ReadAll(MakeStream(input));
    } catch (const HostError&) {
        // an answer like any other
    }
    return 0;
}
