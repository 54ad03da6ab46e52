// Raw DV captures put together from whole frames, pieces, damage and foreign bytes.
#include "engine/Dif.h"
#include "fuzz/Input.h"
#include "hosts/shared/Console.h"
#include "hosts/shared/HostError.h"
#include "hosts/shared/Picture.h"
#include "hosts/shared/RawDvReader.h"
#include "tests/MemoryInput.h"

#include <array>

using namespace scenedetect;
using fuzz::Require;

namespace {

constexpr std::size_t kLargestStream = 4 * kDifFrameBytes625;

// A frame with every block's ID in place and nothing else.
void AppendFrame(std::vector<std::uint8_t>& stream, DvSystem system) {
    constexpr int kVideoBlocksPerAudioBlock = 15;
    const bool is625 = system == DvSystem::Lines625;
    for (int sequence = 0; sequence < (is625 ? kDifSequences625 : kDifSequences525); ++sequence) {
        for (int block = 0; block < kDifSequenceBlocks; ++block) {
            std::array<std::uint8_t, kDifBlockBytes> bytes{};
            auto section = DifSection::Header;
            if (block >= 6)
                section = (block - 6) % (kVideoBlocksPerAudioBlock + 1) == 0 ? DifSection::Audio
                                                                             : DifSection::Video;
            else if (block >= 3)
                section = DifSection::Vaux;
            else if (block >= 1)
                section = DifSection::Subcode;
            bytes[0] = static_cast<std::uint8_t>(static_cast<int>(section) << 5 | 0x1F);
            bytes[1] = static_cast<std::uint8_t>(sequence << 4 | 0x07);
            if (section == DifSection::Header)
                bytes[3] = is625 ? 0xBF : 0x3F;
            stream.insert(stream.end(), bytes.begin(), bytes.end());
        }
    }
}

// The input is a list of instructions.
std::vector<std::uint8_t> MakeStream(fuzz::Input& input) {
    std::vector<std::uint8_t> stream;
    while (!input.IsEmpty() && stream.size() < kLargestStream) {
        switch (input.Take<std::uint8_t>() % 5) {
        case 0:
            AppendFrame(stream, DvSystem::Lines525);
            break;
        case 1:
            AppendFrame(stream, DvSystem::Lines625);
            break;
        case 2: // cut the end off
            stream.resize(stream.size() - std::min<std::size_t>(stream.size(), input.Take<std::uint16_t>()));
            break;
        case 3: { // foreign bytes
            const auto bytes = input.TakeBytes(input.Take<std::uint8_t>());
            stream.insert(stream.end(), bytes.begin(), bytes.end());
            break;
        }
        default: { // damage
            const std::size_t at = input.Take<std::uint32_t>();
            const auto value = input.Take<std::uint8_t>();
            if (!stream.empty())
                stream[at % stream.size()] = value;
        }
        }
    }
    return stream;
}

void ReadAll(const std::vector<std::uint8_t>& stream) {
    static Console console("rawdv_fuzz");
    RawDvReader reader(std::make_unique<testing_support::MemoryInput>(stream), DamageLog(console, "capture"));
    Picture picture;
    FilePlace before{-1, -1, -1};
    while (reader.Next(picture)) {
        const std::size_t bytes = picture.Bytes().size();
        Require(bytes == kDifFrameBytes525 || bytes == kDifFrameBytes625);
        Require(picture.format.height == (bytes == kDifFrameBytes625 ? 576 : 480));
        Require(picture.place.frame > before.frame && picture.place.time > before.time);
        Require(picture.place.byteOffset > before.byteOffset);
        Require(static_cast<std::size_t>(picture.place.byteOffset) + bytes <= stream.size());
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
