// The DIF structure of DV frames (IEC 61834): blocks, sequences and the packs that carry metadata.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace scenedetect {

inline constexpr std::size_t kDifBlockBytes = 80;
inline constexpr std::size_t kDifIdBytes = 3;
inline constexpr int kDifSequenceBlocks = 150;
inline constexpr std::size_t kDifSequenceBytes = kDifSequenceBlocks * kDifBlockBytes;
inline constexpr int kDifSequences525 = 10;
inline constexpr int kDifSequences625 = 12;
inline constexpr std::size_t kDifFrameBytes525 = kDifSequences525 * kDifSequenceBytes;
inline constexpr std::size_t kDifFrameBytes625 = kDifSequences625 * kDifSequenceBytes;

/// The section that a block belongs to: the upper three bits of its first ID byte.
enum class DifSection : std::uint8_t { Header = 0, Subcode = 1, Vaux = 2, Audio = 3, Video = 4 };

inline DifSection SectionOfDifBlock(std::uint8_t firstIdByte) {
    return static_cast<DifSection>(firstIdByte >> 5);
}

/// Where a block belongs in its frame, as its ID says.
struct DifBlockId {
    DifSection section;
    int sequence;
    int number; ///< of the block among those of its section in its sequence

    friend constexpr bool operator==(const DifBlockId&, const DifBlockId&) = default;
};

/// A sequence is a header block, two subcode and three VAUX blocks, then groups of one audio and fifteen
/// video blocks.
inline constexpr int kDifFirstSubcodeBlock = 1;
inline constexpr int kDifFirstVauxBlock = 3;
inline constexpr int kDifFirstGroupBlock = 6;
inline constexpr int kDifGroups = 9;
inline constexpr int kDifVideoBlocksPerGroup = 15;
inline constexpr int kDifVideoBlocks = kDifGroups * kDifVideoBlocksPerGroup;
inline constexpr int kDifGroupBlocks = kDifVideoBlocksPerGroup + 1;

/// Where block `number` of `section` lies among the blocks of its sequence.
constexpr int DifBlockInSequence(DifSection section, int number) {
    switch (section) {
    case DifSection::Header:
        return number;
    case DifSection::Subcode:
        return kDifFirstSubcodeBlock + number;
    case DifSection::Vaux:
        return kDifFirstVauxBlock + number;
    case DifSection::Audio:
        return kDifFirstGroupBlock + number * kDifGroupBlocks;
    case DifSection::Video:
        break;
    }
    return kDifFirstGroupBlock + number / kDifVideoBlocksPerGroup * kDifGroupBlocks + 1 +
           number % kDifVideoBlocksPerGroup;
}

/// Of a video block: its upper half is STA, which tells whether the player could read the block.
inline constexpr std::size_t kDifStatusByte = 3;

/// The ID of the `block`-th block of a frame.
constexpr DifBlockId DifBlockIdAt(int block) {
    const int sequence = block / kDifSequenceBlocks;
    const int inSequence = block % kDifSequenceBlocks;
    if (inSequence < kDifFirstSubcodeBlock)
        return {DifSection::Header, sequence, inSequence};
    if (inSequence < kDifFirstVauxBlock)
        return {DifSection::Subcode, sequence, inSequence - kDifFirstSubcodeBlock};
    if (inSequence < kDifFirstGroupBlock)
        return {DifSection::Vaux, sequence, inSequence - kDifFirstVauxBlock};
    const int group = (inSequence - kDifFirstGroupBlock) / kDifGroupBlocks;
    const int inGroup = (inSequence - kDifFirstGroupBlock) % kDifGroupBlocks;
    if (inGroup == 0)
        return {DifSection::Audio, sequence, group};
    return {DifSection::Video, sequence, group * kDifVideoBlocksPerGroup + inGroup - 1};
}

/// Sequences that the header block announces by its DSF flag; 0 when `frame` is too short to have the flag.
inline int AnnouncedDifSequences(std::span<const std::uint8_t> frame) {
    constexpr std::size_t kFlagByte = 3;
    constexpr std::uint8_t kDsf = 0x80;
    if (frame.size() <= kFlagByte)
        return 0;
    return (frame[kFlagByte] & kDsf) != 0 ? kDifSequences625 : kDifSequences525;
}

/// One pack: its header byte PC0 and four data bytes PC1 to PC4.
inline constexpr std::size_t kDifPackBytes = 5;
using DifPack = std::span<const std::uint8_t, kDifPackBytes>;

inline constexpr std::uint8_t kPackTimecode = 0x13;
inline constexpr std::uint8_t kPackAudioSource = 0x50;
inline constexpr std::uint8_t kPackAudioSourceControl = 0x51;
inline constexpr std::uint8_t kPackSourceControl = 0x61;
inline constexpr std::uint8_t kPackRecordingDate = 0x62;
inline constexpr std::uint8_t kPackRecordingTime = 0x63;

/// Where packs of one kind lie in every sequence.
struct DifPackArea {
    int firstBlock;
    int blocks;
    int packsPerBlock;
    std::size_t firstPack; ///< of PC0 in its block
    std::size_t packPitch;
    int blockPitch = 1;

    [[nodiscard]] constexpr int PacksPerSequence() const { return blocks * packsPerBlock; }
    /// Offset of PC0 of the `index`-th pack, counted through all sequences.
    [[nodiscard]] constexpr std::size_t Offset(int index) const {
        const int inSequence = index % PacksPerSequence();
        const int sequence = index / PacksPerSequence();
        const int block = firstBlock + inSequence / packsPerBlock * blockPitch;
        const int inBlock = inSequence % packsPerBlock;
        return std::size_t(sequence) * kDifSequenceBytes + std::size_t(block) * kDifBlockBytes + firstPack +
               std::size_t(inBlock) * packPitch;
    }
};

/// Subcode sync blocks: six to a block, each with a 3-byte ID before its pack.
inline constexpr DifPackArea kSubcodePacks{kDifFirstSubcodeBlock, 2, 6, kDifIdBytes + 3, 8};
/// Video auxiliary data: fifteen packs to a block.
inline constexpr DifPackArea kVauxPacks{kDifFirstVauxBlock, 3, 15, kDifIdBytes, 5};
/// Audio auxiliary data: one pack before the samples of each audio block.
inline constexpr DifPackArea kAauxPacks{kDifFirstGroupBlock, kDifGroups, 1, kDifIdBytes, 5, kDifGroupBlocks};
inline constexpr std::size_t kDifAudioBytes = kDifBlockBytes - kDifIdBytes - kDifPackBytes; ///< of samples

/// The packs of one area in the first `sequences` sequences, in the order of the stream. Empty when `frame`
/// is shorter than that.
class DifPacks {
  public:
    class Iterator {
      public:
        Iterator(const DifPacks& packs, int index) : m_packs(&packs), m_index(index) {}
        DifPack operator*() const {
            return m_packs->m_frame.subspan(m_packs->m_area.Offset(m_index)).first<5>();
        }
        Iterator& operator++() {
            ++m_index;
            return *this;
        }
        bool operator==(const Iterator& other) const { return m_index == other.m_index; }

      private:
        const DifPacks* m_packs;
        int m_index;
    };

    DifPacks(std::span<const std::uint8_t> frame, const DifPackArea& area, int sequences)
        : m_frame(frame),
          m_area(area),
          m_count(frame.size() / kDifSequenceBytes >= static_cast<std::size_t>(sequences)
                      ? sequences * area.PacksPerSequence()
                      : 0) {}

    [[nodiscard]] Iterator begin() const { return {*this, 0}; }
    [[nodiscard]] Iterator end() const { return {*this, m_count}; }

  private:
    std::span<const std::uint8_t> m_frame;
    DifPackArea m_area;
    int m_count;
};

} // namespace scenedetect
