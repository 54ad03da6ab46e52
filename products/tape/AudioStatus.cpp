#include "products/tape/AudioStatus.h"

#include "reading/dv/DvCheck.h"

#include <array>

namespace scenedetect {
namespace {

constexpr int kSampleBytes16 = 2;
constexpr int kPairBytes12 = 3; // two samples: eight upper bits of each, then four lower of each

// The least count of samples that a frame has, to which the pack's AF SIZE is added: 48, 44.1 and 32 kHz.
constexpr std::array kLeast525 = {1580, 1452, 1053};
constexpr std::array kLeast625 = {1896, 1742, 1264};

// The audio of one half of the sequences: a channel, or at 12 bits two.
struct Half {
    int firstSequence;
    int sequences;
    int samples; // of each channel
};

// Nothing where no pack goes along with the format, or the pack says that nothing was recorded.
std::optional<Half> FindHalf(std::span<const std::uint8_t> frame, DvSystem system,
                             const DvAudioFormat& format, int number) {
    constexpr std::uint8_t kSize = 0x3F;
    constexpr std::uint8_t kMode = 0x0F; // all ones: no audio
    const int sequences = DvSequences(system) / 2;
    const int first = number * sequences;
    const auto packs = frame.subspan(static_cast<std::size_t>(first) * kDifSequenceBytes);
    for (const DifPack pack : DifPacks(packs, kAauxPacks, sequences)) {
        const auto told = pack[0] == kPackAudioSource ? AudioFormatOf(pack) : std::nullopt;
        if (!told || !told->IsCodedAs(format))
            continue;
        if ((pack[2] & kMode) == kMode)
            return std::nullopt;
        const auto& least = system == DvSystem::Lines625 ? kLeast625 : kLeast525;
        const std::size_t rate = pack[4] >> 3 & 7;
        return Half{first, sequences, least[rate] + (pack[1] & kSize)};
    }
    return std::nullopt;
}

// The first sample in each block, by sequence of the half and number of the block; the others follow at a
// distance of as many samples as there are blocks.
int FirstSample(int sequence, int block, int sequences) {
    const int third = block / 3;
    const int row = ((sequence - 2 * third) % sequences + sequences) % sequences;
    return 3 * (row + block % 3 * sequences) + third;
}

struct Channel {
    int samples = 0;
    int errors = 0;

    void Add(bool isError) {
        ++samples;
        errors += isError ? 1 : 0;
    }
};

void Count(std::span<const std::uint8_t> frame, const Half& half, int bits,
           std::array<Channel, 2>& channels) {
    for (int i = 0; i < half.sequences * kDifGroups; ++i) {
        const int sequence = i / kDifGroups;
        const int block = i % kDifGroups;
        const int inFrame = (half.firstSequence + sequence) * kDifSequenceBlocks +
                            DifBlockInSequence(DifSection::Audio, block);
        if (!IsDvBlockInPlace(frame, inFrame))
            continue;
        const auto bytes = frame.subspan(
            static_cast<std::size_t>(inFrame + 1) * kDifBlockBytes - kDifAudioBytes, kDifAudioBytes);
        int sample = FirstSample(sequence, block, half.sequences);
        const std::size_t step = bits == 12 ? kPairBytes12 : kSampleBytes16;
        for (std::size_t at = 0; at < bytes.size() && sample < half.samples; at += step) {
            if (bits == 12) {
                channels[0].Add(bytes[at] == 0x80 && bytes[at + 2] >> 4 == 0);
                channels[1].Add(bytes[at + 1] == 0x80 && (bytes[at + 2] & 0x0F) == 0);
            } else {
                channels[0].Add(bytes[at] == 0x80 && bytes[at + 1] == 0);
            }
            sample += half.sequences * kDifGroups;
        }
    }
}

} // namespace

AudioStatus ReadAudioStatus(std::span<const std::uint8_t> frame, DvSystem system,
                            const DvAudioFormat& format) {
    AudioStatus status;
    if (format.bits != 12 && format.bits != 16)
        return status;
    for (const int number : {0, 1}) {
        const auto half = FindHalf(frame, system, format, number);
        if (!half)
            continue;
        std::array<Channel, 2> channels;
        Count(frame, *half, format.bits, channels);
        for (const Channel& channel : channels)
            if (channel.samples != 0 && channel.errors == channel.samples)
                status.isMuted = true;
            else
                status.errors += channel.errors;
    }
    return status;
}

} // namespace scenedetect
