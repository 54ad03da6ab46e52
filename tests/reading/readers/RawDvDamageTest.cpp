// Raw DV through damage at random. SCENEDETECT_SEEDS is the number of damaged tapes, 400 without it.
#include "tests/DvFrame.h"
#include "tests/reading/readers/WaysOfReading.h"

#include <cstdlib>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <random>

namespace scenedetect {
namespace {

using namespace testing_support;
using Bytes = std::vector<std::uint8_t>;

constexpr int kDamagedFrames = 9;

Bytes UndamagedTape(bool is625) {
    Bytes tape;
    for (int i = 0; i < kDamagedFrames; ++i)
        AppendDifFrame(tape, is625, i);
    return tape;
}

struct TapeFrame {
    std::int64_t frame = 0;
    std::int64_t offset = 0;
    bool isIntact = true;
};

// One to three damages, and which frames they leave intact. Every other tape is damaged anywhere, the rest
// only where two intact frames come before and after.
class RandomDamage {
  public:
    explicit RandomDamage(unsigned seed) : m_random(seed) {
        static const Bytes tapes[] = {UndamagedTape(false), UndamagedTape(true)};
        const bool is625 = seed % 2 != 0;
        m_size = is625 ? 144'000 : 120'000;
        m_bytes = tapes[is625];
        for (int i = 0; i < kDamagedFrames; ++i)
            m_frames.push_back({i, i * m_size, true});
        for (int i = 0; i < m_damages; ++i)
            Damage();
    }

    [[nodiscard]] const Bytes& Stream() const { return m_bytes; }
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
        const std::int64_t last = m_isInside ? m_frames[kDamagedFrames - 2].offset : std::ssize(m_bytes);
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
            Bytes inserted(static_cast<std::size_t>(std::min(length, m_size) / (m_isInside ? 7 : 1) + 1));
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
        // Displaced blocks are known by four in a row; the next frame makes up for those that a frame lacks.
        const bool isLast = at - inFrame == m_frames.back().offset;
        const auto rest = static_cast<std::int64_t>(kDifBlockBytes * (isLast ? 5 : 1));
        if (inFrame != 0 && inFrame < m_size - rest)
            m_losers.push_back(at - inFrame);
        for (TapeFrame& frame : m_frames)
            if (frame.offset >= at)
                frame.offset += by;
    }

    std::mt19937 m_random;
    std::int64_t m_size = 0;
    Bytes m_bytes;
    std::vector<TapeFrame> m_frames;
    std::vector<std::int64_t> m_losers;
    const bool m_isInside = m_random() % 2 != 0;
    const std::int64_t m_damages = Number(3);
};

void Check(unsigned seed) {
    const RandomDamage damage(seed);
    const Outcome run = ReadAll(damage.Stream(), Way::File);
    EXPECT_TRUE(run.isOfStream);
    EXPECT_EQ(run, ReadAll(damage.Stream(), Way::Pipe, seed));
    EXPECT_EQ(run, ReadAll(damage.Stream(), Way::TwoThreads));

    std::vector<std::int64_t> offsets;
    for (std::size_t i = 0; i < run.places.size(); ++i) {
        offsets.push_back(run.places[i].byteOffset);
        EXPECT_TRUE(i == 0 || run.places[i].frame > run.places[i - 1].frame);
    }
    for (std::size_t i = 0; i < kDamagedFrames; ++i) {
        const TapeFrame& frame = damage.Frames()[i];
        const auto found = std::ranges::find(offsets, frame.offset);
        EXPECT_TRUE(!frame.isIntact || found != offsets.end()) << "frame " << i;
        if (damage.HasCertainNumber(i) && found != offsets.end()) {
            const auto index = static_cast<std::size_t>(found - offsets.begin());
            EXPECT_EQ(run.places[index].frame, frame.frame);
        }
    }
    EXPECT_TRUE(!run.told.empty() || run.places.size() == kDamagedFrames);
    // Of a frame that has lost bytes all blocks after these are displaced.
    for (const std::int64_t loser : damage.OffsetsOfLosers())
        EXPECT_THAT(offsets, testing::Not(testing::Contains(loser)));
}

TEST(RawDvDamage, CostsNoFrameButTheDamaged) {
    const char* const seeds = std::getenv("SCENEDETECT_SEEDS");
    const auto count = static_cast<unsigned>(seeds ? std::atoi(seeds) : 400);
    for (unsigned seed = 0; seed < count && !testing::Test::HasFailure(); ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        Check(seed);
    }
}

} // namespace
} // namespace scenedetect
