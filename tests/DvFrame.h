// DV frames for tests, made from their structure: DIF blocks with their IDs, packs, DC bytes, error marks.
// Offsets are those of IEC 61834, written out here once more so that tests do not rely on the code under
// test.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <initializer_list>
#include <vector>

namespace scenedetect::testing_support {

using Pack = std::array<std::uint8_t, 5>; // PC0 to PC4

inline std::uint8_t Bcd(std::int64_t value) {
    return static_cast<std::uint8_t>(value / 10 * 16 + value % 10);
}

struct TimeOfDay {
    int hours = 0;
    int minutes = 0;
    int seconds = 0;
    int frames = 0;
};

inline Pack TimecodePack(const TimeOfDay& time) {
    return {0x13, Bcd(time.frames), Bcd(time.seconds), Bcd(time.minutes), Bcd(time.hours)};
}
inline Pack RecordingTimePack(const TimeOfDay& time) {
    return {0x63, Bcd(time.frames), Bcd(time.seconds), Bcd(time.minutes), Bcd(time.hours)};
}

/// Of a time of day in seconds: 0x13 with frames, or 0x63 without.
inline Pack TimePack(std::int64_t seconds, int frames = -1, bool isDropFrame = false) {
    const std::int64_t ofDay = seconds % 86400;
    return {static_cast<std::uint8_t>(frames < 0 ? 0x63 : 0x13),
            static_cast<std::uint8_t>(frames < 0 ? 0xFF : Bcd(frames) | (isDropFrame ? 0x40 : 0)),
            Bcd(ofDay % 60), Bcd(ofDay / 60 % 60), Bcd(ofDay / 3600)};
}

class DvFrame {
  public:
    static constexpr int kBlock = 80;
    static constexpr int kSequence = 150 * kBlock;

    /// Without packs; `fill` is the content of its video and audio blocks.
    explicit DvFrame(bool is625 = true, std::uint8_t fill = 0)
        : m_bytes(static_cast<std::size_t>((is625 ? 12 : 10) * kSequence), fill), m_is625(is625) {
        for (int sequence = 0; sequence < Sequences(); ++sequence) {
            int counts[5] = {}; // blocks of each section
            for (int block = 0; block < 150; ++block) {
                const int section = block == 0              ? 0
                                    : block < 3             ? 1
                                    : block < 6             ? 2
                                    : (block - 6) % 16 == 0 ? 3
                                                            : 4;
                std::uint8_t* id = &m_bytes[static_cast<std::size_t>(sequence * kSequence + block * kBlock)];
                id[0] = static_cast<std::uint8_t>(section << 5 | 0x1F);
                id[1] = static_cast<std::uint8_t>(sequence << 4 | 0x07);
                id[2] = static_cast<std::uint8_t>(counts[section]++);
                if (section < 3)
                    std::fill(id + 3, id + kBlock, static_cast<std::uint8_t>(0xFF));
                if (section == 3)
                    std::fill(id + 3, id + 8, static_cast<std::uint8_t>(0xFF)); // its pack
                if (section == 0) {
                    id[3] = is625 ? 0xBF : 0x3F;
                    id[4] = is625 ? 0xF8 : 0xF9;
                }
            }
        }
    }

    [[nodiscard]] int Sequences() const { return m_is625 ? 12 : 10; }
    [[nodiscard]] bool Is625() const { return m_is625; }
    [[nodiscard]] std::vector<std::uint8_t>& Bytes() { return m_bytes; }

    /// A pack at these offsets of the sequences from `from` to `to` - 1.
    DvFrame& Set(std::initializer_list<int> offsets, const Pack& pack, int from = 0, int to = 12) {
        for (int i = from; i < std::min(to, Sequences()); ++i)
            for (const int offset : offsets)
                std::copy(pack.begin(), pack.end(), m_bytes.begin() + i * kSequence + offset);
        return *this;
    }
    /// In both subcode blocks, the first VAUX block, the first audio block.
    DvFrame& SetTimecode(const Pack& pack) { return Set({86, 166}, pack); }
    DvFrame& SetDate(const Pack& pack) { return Set({243}, pack); }
    DvFrame& SetTime(const Pack& pack) { return Set({248}, pack); }
    DvFrame& SetSourceControl(const Pack& pack) { return Set({253}, pack); }
    /// PC2 of 0x51.
    DvFrame& SetMarks(std::uint8_t marks) { return Set({483}, {0x51, 0x3F, marks, 0xA0, 0xFF}); }
    /// PC4 of 0x50, in the fourth audio block: 0xC0 is 48 kHz at 16 bits, with 1,920 or 1,602 samples, 0xD1
    /// is 32 kHz at 12 bits, with 1,280 or 1,068.
    DvFrame& SetAudio(std::uint8_t format) {
        const bool is12 = format == 0xD1;
        const int size = is12 ? (m_is625 ? 16 : 15) : (m_is625 ? 24 : 22);
        return Set({4323}, {0x50, static_cast<std::uint8_t>(0xC0 | size),
                            static_cast<std::uint8_t>(is12 ? 0x20 : 0), 0xE0, format});
    }
    /// The bytes of all samples.
    template <typename Next>
    DvFrame& FillAudio(Next next) {
        for (int sequence = 0; sequence < Sequences(); ++sequence)
            for (int block = 6; block < 150; block += 16)
                std::generate_n(m_bytes.begin() + sequence * kSequence + block * kBlock + 8, 72, std::ref(next));
        return *this;
    }
    /// STA of the `index`-th video block of a sequence, counted as its ID does.
    DvFrame& SetStatus(int sequence, int index, int status) {
        *VideoBlock(sequence, index, 3) = static_cast<std::uint8_t>(status << 4);
        return *this;
    }
    /// Every luminance block of the picture gets this DC byte (128 is level 0).
    DvFrame& SetLuma(std::uint8_t dcByte) {
        for (int sequence = 0; sequence < Sequences(); ++sequence)
            for (int index = 0; index < 135; ++index)
                for (const int offset : {4, 18, 32, 46})
                    *VideoBlock(sequence, index, offset) = dcByte;
        return *this;
    }
    DvFrame& Cut(std::size_t bytes) {
        m_bytes.resize(bytes);
        return *this;
    }

  private:
    std::uint8_t* VideoBlock(int sequence, int index, int offset) {
        return &m_bytes[static_cast<std::size_t>(sequence * kSequence + (7 + index + index / 15) * kBlock +
                                                 offset)];
    }

    std::vector<std::uint8_t> m_bytes;
    bool m_is625;
};

/// Appends a frame whose timecode is `timecode` frames.
inline void AppendDifFrame(std::vector<std::uint8_t>& stream, bool is625, int timecode) {
    const int rate = is625 ? 25 : 30;
    DvFrame frame(is625);
    frame.SetTimecode(TimePack(timecode / rate, timecode % rate));
    stream.insert(stream.end(), frame.Bytes().begin(), frame.Bytes().end());
}

} // namespace scenedetect::testing_support
