// Frames with the packs that a camera writes, made one after the other in one place.
#pragma once

#include "reading/readers/Picture.h"
#include "tests/DifMaking.h"

#include <algorithm>
#include <cstdint>
#include <initializer_list>
#include <vector>

namespace scenedetect::testing_support {

using Pack = std::array<std::uint8_t, 5>;

inline std::uint8_t Bcd(std::int64_t value) {
    return static_cast<std::uint8_t>(value / 10 * 16 + value % 10);
}

/// A pack of a time: 0x13 with frames, or 0x63 without.
inline Pack TimePack(std::int64_t seconds, int frames = -1, bool isDropFrame = false) {
    const std::int64_t ofDay = seconds % 86400;
    return {static_cast<std::uint8_t>(frames < 0 ? 0x63 : 0x13),
            static_cast<std::uint8_t>(frames < 0 ? 0xFF : Bcd(frames) | (isDropFrame ? 0x40 : 0)),
            Bcd(ofDay % 60), Bcd(ofDay / 60 % 60), Bcd(ofDay / 3600)};
}

class TapeFrame {
  public:
    explicit TapeFrame(bool is625) : m_is625(is625) {
        AppendDifFrame(m_bytes, is625, 0);
        for (int i = 0; i < Sequences(); ++i)
            SetTimecode({0xFF, 0xFF, 0xFF, 0xFF, 0xFF});
    }

    [[nodiscard]] int Sequences() const { return m_is625 ? 12 : 10; }
    [[nodiscard]] bool Is625() const { return m_is625; }
    [[nodiscard]] std::vector<std::uint8_t>& Bytes() { return m_bytes; }

    // Offsets in a sequence: subcode block 0, VAUX block 0, audio block 0.
    void SetTimecode(const Pack& pack) { Set({86, 166}, pack); }
    void SetDate(const Pack& pack) { Set({243}, pack); }
    void SetTime(const Pack& pack) { Set({248}, pack); }
    void SetSourceControl(const Pack& pack) { Set({253}, pack); }
    /// PC2 of 0x51.
    void SetMarks(std::uint8_t marks) { Set({483}, {0x51, 0x3F, marks, 0xA0, 0xFF}); }
    /// STA of the `index`-th video block of a sequence, counted as its ID does.
    void SetStatus(int sequence, int index, int status) {
        const int block = 7 + index + index / 15;
        m_bytes[static_cast<std::size_t>(sequence * 12'000 + block * 80 + 3)] =
            static_cast<std::uint8_t>(status << 4);
    }
    void Set(std::initializer_list<int> offsets, const Pack& pack, int from = 0, int to = 12) {
        for (int i = from; i < std::min(to, Sequences()); ++i)
            for (const int offset : offsets)
                std::copy(pack.begin(), pack.end(), m_bytes.begin() + i * 12'000 + offset);
    }

  private:
    std::vector<std::uint8_t> m_bytes;
    bool m_is625;
};

} // namespace scenedetect::testing_support
