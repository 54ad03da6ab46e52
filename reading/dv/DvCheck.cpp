#include "reading/dv/DvCheck.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>
#include <utility>

namespace scenedetect {
namespace {

constexpr int kMostBlocks = kDifSequences625 * kDifSequenceBlocks;

// The fields of an ID that tell the place, and one of the reserved bits: those are ones, so that a zeroed
// block is no header. The FSC bit, which tells the halves of 50 Mbit/s frames apart, is left out.
constexpr std::array<std::uint8_t, 4> kPlaceBits = {0xE0, 0xF1, 0xFF, 0x00};

// In the order of the bytes in memory, whatever number that makes.
constexpr std::uint32_t Key(const std::array<std::uint8_t, 4>& bytes) {
    return std::bit_cast<std::uint32_t>(bytes);
}

std::uint32_t KeyAt(const std::uint8_t* block) {
    std::uint32_t key = 0;
    std::memcpy(&key, block, sizeof key);
    return key & Key(kPlaceBits);
}

constexpr std::array<std::uint32_t, kMostBlocks> MakeKeys() {
    std::array<std::uint32_t, kMostBlocks> keys{};
    for (int i = 0; i < kMostBlocks; ++i) {
        const DifBlockId id = DifBlockIdAt(i);
        keys[static_cast<std::size_t>(i)] =
            Key({static_cast<std::uint8_t>(static_cast<int>(id.section) << 5),
                 static_cast<std::uint8_t>(id.sequence << 4 | 1), static_cast<std::uint8_t>(id.number), 0});
    }
    return keys;
}
constexpr std::array<std::uint32_t, kMostBlocks> kKeys = MakeKeys();

std::uint32_t KeyOf(std::size_t block) {
    return kKeys[block];
}

bool IsHeaderOfFirstSequence(const std::uint8_t* block) {
    return KeyAt(block) == KeyOf(0);
}

// A block number in the frame of 625 lines; nothing when no block there has this ID.
std::optional<std::size_t> PlaceOf(const std::uint8_t* block) {
    const auto inSequence =
        static_cast<std::size_t>(DifBlockInSequence(SectionOfDifBlock(block[0]), block[2]));
    // The table has the last word: numbers that run out of their section are other blocks' there.
    const std::size_t place = (block[1] >> 4) * std::size_t{kDifSequenceBlocks} + inSequence;
    return inSequence < kDifSequenceBlocks && place < kKeys.size() && KeyAt(block) == KeyOf(place)
               ? std::optional(place)
               : std::nullopt;
}

// The place of the first of a few blocks that belong after each other; nothing where there are no such.
constexpr std::size_t kRunBlocks = 4;
std::optional<std::size_t> PlaceOfRun(std::span<const std::uint8_t> data) {
    const auto place = PlaceOf(data.data());
    for (std::size_t i = 1; place && i < kRunBlocks; ++i) {
        const auto next = PlaceOf(&data[i * kDifBlockBytes]);
        // A frame's last block is followed by the next frame's first.
        if (!next || (*next != *place + i && *next >= i))
            return std::nullopt;
    }
    return place;
}

bool Announces(const std::uint8_t* header, DvSystem system) {
    return (AnnouncedDifSequences({header, kDifBlockBytes}) == kDifSequences625) ==
           (system == DvSystem::Lines625);
}

// The common case at the speed of memory.
bool AreAllInPlace(std::span<const std::uint8_t> data, DvSystem system) {
    std::uint32_t wrong = 0;
    for (std::size_t i = 0, at = 0; at < data.size(); ++i, at += kDifBlockBytes)
        wrong |= KeyAt(&data[at]) ^ KeyOf(i);
    for (std::size_t at = 0; at < data.size(); at += kDifSequenceBytes)
        wrong |= Announces(&data[at], system) ? 0u : 1u;
    return wrong == 0;
}

} // namespace

std::optional<DvSystem> VoteDvSystem(std::span<const std::uint8_t> data) {
    int votes = 0; // above 0: for 625
    for (std::size_t i = 0; i < kDifSequences625; ++i) {
        const std::size_t at = i * kDifSequenceBytes;
        if (at + kDifBlockBytes > data.size())
            break;
        if (KeyAt(&data[at]) == KeyOf(i * kDifSequenceBlocks))
            votes += Announces(&data[at], DvSystem::Lines625) ? 1 : -1;
    }
    if (votes == 0)
        return std::nullopt;
    return votes > 0 ? DvSystem::Lines625 : DvSystem::Lines525;
}

std::optional<DvSystem> IdentifyDvFrame(std::span<const std::uint8_t> frame) {
    const auto system = VoteDvSystem(frame);
    return system && frame.size() == DvFrameBytes(*system) ? system : std::nullopt;
}

bool IsDvBlockInPlace(std::span<const std::uint8_t> frame, int block) {
    const auto number = static_cast<std::size_t>(block);
    return number < kKeys.size() && (number + 1) * kDifBlockBytes <= frame.size() &&
           KeyAt(&frame[number * kDifBlockBytes]) == KeyOf(number);
}

DvCheck CheckDvFrame(std::span<const std::uint8_t> data, DvSystem system) {
    const std::size_t blocks = std::min(data.size(), DvFrameBytes(system)) / kDifBlockBytes;
    DvCheck check;
    check.system = system;
    check.blocks = static_cast<int>(blocks);
    check.firstDamaged = check.blocks;
    if (AreAllInPlace(data.first(blocks * kDifBlockBytes), system)) {
        check.goodBlocks = check.blocks;
        check.lastGood = check.blocks - 1;
        return check;
    }
    const std::uint8_t* block = data.data();
    bool isGood = false;
    for (std::size_t i = 0; i < blocks; ++i, block += kDifBlockBytes) {
        const bool wasGood = std::exchange(
            isGood, KeyAt(block) == KeyOf(i) && (i % kDifSequenceBlocks != 0 || Announces(block, system)));
        if (isGood)
            ++check.goodBlocks;
        else
            check.firstDamaged = std::min(check.firstDamaged, static_cast<int>(i));
        if (isGood && wasGood)
            check.lastGood = static_cast<int>(i);
    }
    return check;
}

bool HasDvFrameLostBytes(std::span<const std::uint8_t> data, const DvCheck& check) {
    if (check.lastGood == check.blocks - 1)
        return false;
    const std::size_t frameBytes = DvFrameBytes(check.system);
    const std::size_t firstLost = static_cast<std::size_t>(check.lastGood) + 1;
    for (std::size_t at = firstLost * kDifBlockBytes; at + kRunBlocks * kDifBlockBytes <= data.size(); ++at) {
        const auto place = PlaceOfRun(data.subspan(at));
        if (!place || at == *place * kDifBlockBytes)
            continue;
        // After the frame's end only what should have been within it tells; the next frame comes to its
        // place or has troubles of its own.
        return at < frameBytes || (*place >= firstLost && at != frameBytes + *place * kDifBlockBytes);
    }
    return false;
}

bool IsDvFrameStart(std::span<const std::uint8_t> data) {
    if (data.size() < kLeastDvBlocks * kDifBlockBytes || !IsHeaderOfFirstSequence(data.data()))
        return false;
    return CheckDvFrame(data, VoteDvSystem(data).value_or(DvSystem::Lines525)).IsPlausible();
}

std::optional<std::size_t> FindDvFrame(std::span<const std::uint8_t> data, std::size_t from,
                                       std::size_t end) {
    for (std::size_t at = from; at < std::min(end, data.size()); ++at)
        if (data.size() - at >= kDifBlockBytes && IsHeaderOfFirstSequence(&data[at]) &&
            IsDvFrameStart(data.subspan(at)))
            return at;
    return std::nullopt;
}

} // namespace scenedetect
