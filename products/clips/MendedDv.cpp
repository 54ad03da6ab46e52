#include "products/clips/MendedDv.h"

#include <algorithm>
#include <array>

namespace scenedetect {
namespace {

using Bytes = std::span<const std::uint8_t>;

// The first block of a sequence that is as it should be; nothing when the frame's very first is.
std::optional<Bytes> FindHeader(Bytes frame, int sequences) {
    constexpr std::uint8_t kSection = 0x1F;
    constexpr std::uint8_t kReserved = 0x07;
    for (int sequence = 0; sequence < sequences; ++sequence) {
        const Bytes block =
            frame.subspan(static_cast<std::size_t>(sequence) * kDifSequenceBytes, kDifBlockBytes);
        if (block[0] == kSection && block[1] == (sequence << 4 | kReserved) && block[2] == 0 &&
            AnnouncedDifSequences(block) == sequences)
            return sequence == 0 ? std::nullopt : std::optional(block);
    }
    return std::nullopt;
}

void PutHeader(Bytes header, std::span<std::uint8_t> frame) {
    std::ranges::copy(header, frame.begin());
    frame[1] &= 0x0F; // the number of its sequence
}

// The source pack that the libraries read: in the fourth audio block.
constexpr std::size_t kSourcePack = kAauxPacks.Offset(3);

bool Tells(DifPack pack, const DvAudioFormat& format) {
    const auto told = pack[0] == kPackAudioSource ? AudioFormatOf(pack) : std::nullopt;
    return told && told->IsCodedAs(format);
}

// Of as many samples as the frame lasts, rounded up.
std::array<std::uint8_t, 5> MakeSourcePack(DvSystem system, const DvAudioFormat& format) {
    // AF SIZE counts those above a least number (IEC 61834-4): 48, 44.1 and 32 kHz.
    constexpr std::array<std::uint8_t, 3> kSizes525 = {22, 20, 15};
    constexpr std::array<std::uint8_t, 3> kSizes625 = {24, 22, 16};
    const int rate = format.samplingRate == 48000 ? 0 : format.samplingRate == 44100 ? 1 : 2;
    const int bits = format.bits == 16 ? 0 : format.bits == 12 ? 1 : 2;
    const auto& sizes = system == DvSystem::Lines625 ? kSizes625 : kSizes525;
    return {kPackAudioSource, static_cast<std::uint8_t>(0xC0 | sizes[static_cast<std::size_t>(rate)]),
            static_cast<std::uint8_t>(format.channels == 4 ? 0x20 : 0), 0xC0,
            static_cast<std::uint8_t>(0xC0 | rate << 3 | bits)};
}

// Every sample becomes the code of one that could not be read: 0x8000, or 0x800 of 12 bits, two in three
// bytes.
void Silence(std::span<std::uint8_t> frame, int sequences, int bits) {
    const std::array<std::uint8_t, 3> code = {0x80, static_cast<std::uint8_t>(bits == 12 ? 0x80 : 0), 0};
    const std::size_t length = bits == 12 ? 3 : 2;
    for (int i = 0; i < sequences * kAauxPacks.PacksPerSequence(); ++i) {
        const auto samples = frame.subspan(kAauxPacks.Offset(i) + kDifPackBytes, kDifAudioBytes);
        for (std::size_t at = 0; at < samples.size(); ++at)
            samples[at] = code[at % length];
    }
}

} // namespace

std::optional<MendedDv> Mend(Bytes frame, DvSystem system, const std::optional<DvAudioFormat>& format) {
    const int sequences = DvSequences(system);
    const auto header = FindHeader(frame, sequences);
    const bool lacksPack = format && !Tells(frame.subspan<kSourcePack, kDifPackBytes>(), *format);
    if (!header && !lacksPack)
        return std::nullopt;
    MendedDv mended{{frame.begin(), frame.end()}};
    if (header)
        PutHeader(*header, mended.bytes);
    if (!lacksPack)
        return mended;
    const auto target = mended.bytes.begin() + kSourcePack;
    const DifPacks packs(frame, kAauxPacks, sequences);
    for (const DifPack pack : packs)
        if (Tells(pack, *format)) {
            std::ranges::copy(pack, target);
            return mended;
        }
    std::ranges::copy(MakeSourcePack(system, *format), target);
    Silence(mended.bytes, sequences, format->bits);
    mended.isSilent = true;
    return mended;
}

} // namespace scenedetect
