// Raw DV captures put together from whole frames, pieces, damage and unknown bytes, read in every way.
#include "engine/Dif.h"
#include "fuzz/Input.h"
#include "tests/DvFrame.h"
#include "tests/reading/readers/WaysOfReading.h"

#include <algorithm>

using namespace scenedetect;
using namespace scenedetect::testing_support;
using fuzz::Require;

namespace {

using Bytes = std::vector<std::uint8_t>;

constexpr std::size_t kLargestStream = 3 * kDifFrameBytes625;
constexpr std::uint8_t kManyBytes = 0x80; // makes an instruction's damage a long one

// A frame whose timecode goes on with the stream, with jumps where something was cut off between.
const Bytes& FrameAfter(const Bytes& stream, bool is625) {
    static const auto frames = [] {
        std::vector<Bytes> made;
        for (int i = 0; i < 32; ++i)
            AppendDifFrame(made.emplace_back(), i >= 16, i % 16);
        return made;
    }();
    return frames[stream.size() / 40'000 % 16 + (is625 ? 16 : 0)];
}

// The input is a list of instructions.
Bytes MakeStream(fuzz::Input& input) {
    Bytes stream;
    while (!input.IsEmpty() && stream.size() < kLargestStream) {
        const auto instruction = input.Take<std::uint8_t>();
        switch (instruction % 5) {
        case 0:
        case 1: {
            const Bytes& frame = FrameAfter(stream, instruction % 5 == 1);
            stream.insert(stream.end(), frame.begin(), frame.end());
            break;
        }
        case 2: // cut the end off
            stream.resize(stream.size() - std::min<std::size_t>(stream.size(), input.Take<std::uint16_t>()));
            break;
        case 3: { // unknown bytes
            const auto bytes = input.TakeBytes(input.Take<std::uint8_t>());
            stream.insert(stream.end(), bytes.begin(), bytes.end());
            break;
        }
        default: { // damage: a byte, or as many of the same as the upper bits of its place tell
            const std::size_t at = input.Take<std::uint32_t>();
            const auto value = input.Take<std::uint8_t>();
            if (stream.empty())
                break;
            const auto first = stream.begin() + static_cast<std::ptrdiff_t>(at % stream.size());
            const auto length = (instruction & kManyBytes) == 0 ? 1 : static_cast<std::ptrdiff_t>(at >> 12);
            std::fill(first, first + std::min(length, stream.end() - first), value);
        }
        }
    }
    return stream;
}

void Check(const Outcome& outcome, const Bytes& stream) {
    for (const Irregularity& each : outcome.told) {
        Require(each.frame >= 0 && each.frames >= 0 && each.bytes >= 0 && each.byteOffset >= 0);
        Require(static_cast<std::size_t>(each.byteOffset) <= stream.size());
        Require(!IrregularityText(each).empty());
    }
    Require(outcome.isOfStream);
    Require(outcome.places.empty() || IsAllTold(outcome, std::ssize(stream)));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::Input input(data, size);
    const auto way = input.Take<std::uint8_t>();
    const Bytes stream = MakeStream(input);
    const Outcome outcome = ReadAll(stream, Way::File);
    Check(outcome, stream);
    // Starting a thread takes longer than all the rest.
    Require(outcome == ReadAll(stream, way % 16 == 0 ? Way::TwoThreads : Way::Pipe, way));
    return 0;
}
