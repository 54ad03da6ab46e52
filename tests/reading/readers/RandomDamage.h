// Damage at random to a raw DV tape, and what it leaves intact.
#pragma once

#include "engine/Dif.h"

#include <algorithm>
#include <cstdint>
#include <random>
#include <utility>
#include <vector>

namespace scenedetect::testing_support {

struct TapeFrame {
    std::int64_t frame = 0;
    std::int64_t offset = 0; // in what has become of the tape
    bool isIntact = true;
};

/// One to three damages, and which frames they leave intact. Every other tape is damaged anywhere, the rest
/// only where two intact frames come before and after.
class RandomDamage {
  public:
    /// To a tape of so many frames of one line system.
    RandomDamage(std::vector<std::uint8_t> tape, int frames, unsigned seed)
        : m_random(seed), m_size(std::ssize(tape) / frames), m_bytes(std::move(tape)) {
        for (int i = 0; i < frames; ++i)
            m_frames.push_back({i, i * m_size, true});
        for (int i = 0; i < m_damages; ++i)
            Damage();
    }

    [[nodiscard]] const std::vector<std::uint8_t>& Stream() const { return m_bytes; }
    [[nodiscard]] const std::vector<TapeFrame>& Frames() const { return m_frames; }
    [[nodiscard]] bool IsInside() const { return m_isInside; }
    /// Of frames with bytes too few or too many anywhere but in their last block; of a single damage only,
    /// since two can make up for each other.
    [[nodiscard]] std::vector<std::int64_t> OffsetsOfLosers() const {
        return m_damages == 1 ? m_losers : std::vector<std::int64_t>();
    }
    /// Frames that can be known by their timecode: two of them in a row, outside of the damage.
    [[nodiscard]] bool HasCertainNumber(std::size_t index) const {
        const bool withNext = index + 1 < m_frames.size() && m_frames[index + 1].isIntact;
        return m_isInside && m_frames[index].isIntact &&
               (index < 2 || withNext || (index > 0 && m_frames[index - 1].isIntact));
    }

  private:
    void Damage() {
        const std::int64_t first = m_isInside ? m_frames[2].offset : 0;
        const std::int64_t last = m_isInside ? m_frames[m_frames.size() - 2].offset : std::ssize(m_bytes);
        const std::int64_t lengths[] = {Number(8),         80, Number(2000), 12'000, Number(m_size),
                                        Number(3 * m_size)};
        const std::int64_t at = first + Number(last - first) - 1;
        const std::int64_t length = std::min(lengths[m_random() % 6], last - at);
        const auto from = m_bytes.begin() + at;
        switch (m_random() % 4) {
        case 0:
            Touch(at, length);
            m_bytes.erase(from, from + length);
            Shift(at, -length);
            break;
        case 1: {
            // All of them together have less than half a frame, which would pass for a whole one.
            std::vector<std::uint8_t> inserted(
                static_cast<std::size_t>(std::min(length, m_size) / (m_isInside ? 7 : 1) + 1));
            std::ranges::generate(inserted, [this] { return static_cast<std::uint8_t>(m_random()); });
            Touch(at, 0);
            m_bytes.insert(from, inserted.begin(), inserted.end());
            Shift(at, std::ssize(inserted));
            break;
        }
        case 2:
            Touch(at, length);
            std::fill_n(from, length, m_random() % 2 != 0 ? 0xFF : 0);
            break;
        default:
            Touch(at, length);
            std::generate_n(from, length, [this] { return static_cast<std::uint8_t>(m_random()); });
        }
    }
    std::int64_t Number(std::int64_t most) {
        return 1 + static_cast<std::int64_t>(m_random() % static_cast<std::uint64_t>(most));
    }
    void Touch(std::int64_t at, std::int64_t length) {
        for (TapeFrame& frame : m_frames) {
            const bool isWithin = at < frame.offset + m_size && at + length > frame.offset;
            if (isWithin && !(length == 0 && at == frame.offset))
                frame.isIntact = false;
        }
    }
    void Shift(std::int64_t at, std::int64_t by) {
        const std::int64_t inFrame = at % m_size;
        // Displaced blocks are known by four in a row, of which a next frame may have the last, and within
        // two frames.
        const bool isLast = at - inFrame == m_frames.back().offset;
        const std::int64_t rest = kDifBlockBytes * (isLast ? 5 : 1);
        const bool isNear = inFrame + by + 5 * kDifBlockBytes <= 2 * std::int64_t{kDifFrameBytes625};
        if (inFrame != 0 && inFrame < m_size - rest && isNear)
            m_losers.push_back(at - inFrame);
        for (TapeFrame& frame : m_frames)
            if (frame.offset >= at)
                frame.offset += by;
    }

    std::mt19937 m_random;
    const std::int64_t m_size;
    std::vector<std::uint8_t> m_bytes;
    std::vector<TapeFrame> m_frames;
    std::vector<std::int64_t> m_losers;
    const bool m_isInside = m_random() % 2 != 0;
    const std::int64_t m_damages = Number(3);
};

} // namespace scenedetect::testing_support
