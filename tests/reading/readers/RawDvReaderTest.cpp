// Raw DV through damage of every kind, judged by which frames come out, under which number, and what is told.
#include "reading/readers/RawDvReader.h"
#include "reading/base/HostError.h"
#include "tests/DvFrame.h"
#include "tests/MemoryInput.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <random>

namespace scenedetect {
namespace {

using namespace testing_support;
using testing::ElementsAre;
using Bytes = std::vector<std::uint8_t>;
using Kind = IrregularityKind;

struct Outcome {
    std::vector<FilePlace> places;
    std::vector<Irregularity> told;
    bool isAligned = true;

    [[nodiscard]] std::vector<std::int64_t> Frames() const {
        std::vector<std::int64_t> frames;
        for (const FilePlace& place : places)
            frames.push_back(place.frame);
        return frames;
    }
};

Outcome ReadAll(const Bytes& stream) {
    static Console console("test");
    Outcome run;
    const DamageLog damage(console, "memory", [&run](const Irregularity& each) { run.told.push_back(each); });
    try {
        RawDvReader reader(std::make_unique<MemoryInput>(stream), damage);
        Picture picture;
        while (reader.Next(picture)) {
            const auto offset = static_cast<std::ptrdiff_t>(picture.place.byteOffset);
            const auto bytes = picture.Bytes();
            run.isAligned = run.isAligned && reinterpret_cast<std::uintptr_t>(bytes.data()) % 64 == 0;
            EXPECT_TRUE(std::equal(bytes.begin(), bytes.end(), stream.begin() + offset));
            run.places.push_back(picture.place);
        }
    } catch (const HostError&) {
        // no frame at all
    }
    return run;
}

Bytes Tape(bool is625, int frames) {
    Bytes tape;
    for (int i = 0; i < frames; ++i)
        AppendDifFrame(tape, is625, i);
    return tape;
}

class RawDvReading : public testing::TestWithParam<bool> {
  protected:
    const std::int64_t m_size = GetParam() ? 144'000 : 120'000;
    Bytes m_tape = Tape(GetParam(), 8);

    [[nodiscard]] Bytes::iterator At(std::int64_t frame, std::int64_t offset = 0) {
        return m_tape.begin() + frame * m_size + offset;
    }
};

INSTANTIATE_TEST_SUITE_P(Systems, RawDvReading, testing::Bool(),
                         [](const auto& each) { return each.param ? "Lines625" : "Lines525"; });

TEST_P(RawDvReading, WholeTapeIsReadInPlace) {
    const Outcome run = ReadAll(m_tape);
    EXPECT_THAT(run.Frames(), ElementsAre(0, 1, 2, 3, 4, 5, 6, 7));
    EXPECT_TRUE(run.isAligned);
    EXPECT_EQ(run.places[5].byteOffset, 5 * m_size);
    EXPECT_EQ(run.places[5].time, 5 * (GetParam() ? 1200 : 1001));
    EXPECT_TRUE(run.told.empty());
}

TEST_P(RawDvReading, DamagedBlocksCostNoFrame) {
    // The first block, a few in the middle, the last ones: one line for the frame.
    for (const auto& [offset, bytes] : {std::pair<int, int>{0, 80}, {24'000, 800}, {100'080, 160}}) {
        Bytes damaged = m_tape;
        std::fill_n(damaged.begin() + 3 * m_size + offset, bytes, 0);
        const Outcome run = ReadAll(damaged);
        EXPECT_EQ(run.places.size(), 8u) << offset;
        EXPECT_THAT(run.told,
                    ElementsAre(Irregularity{3, 3 * m_size + offset, bytes, Kind::DamagedBlocks, 0}));
    }
    std::fill_n(At(3, m_size - 240), 480, 0xFF); // over the end
    const Outcome run = ReadAll(m_tape);
    EXPECT_EQ(run.places.size(), 8u);
    EXPECT_THAT(run.told, ElementsAre(Irregularity{3, 4 * m_size - 240, 240, Kind::DamagedBlocks, 0},
                                      Irregularity{4, 4 * m_size, 240, Kind::DamagedBlocks, 0}));
}

TEST_P(RawDvReading, LostBytesCostTheirFrameOnly) {
    for (const std::int64_t lost : {1, 79, 80, 12'000, 24'000})
        for (const std::int64_t offset : {std::int64_t{0}, std::int64_t{40}, m_size / 2, m_size - lost}) {
            if (lost < 80 && (offset == 0 || offset == m_size - lost))
                continue; // the last block of the frame before may bear that, or this frame's
            Bytes damaged = m_tape;
            const auto at = damaged.begin() + 3 * m_size + offset;
            damaged.erase(at, at + lost);
            const Outcome run = ReadAll(damaged);
            EXPECT_THAT(run.Frames(), ElementsAre(0, 1, 2, 4, 5, 6, 7)) << lost << " at " << offset;
            EXPECT_THAT(run.told, ElementsAre(Irregularity{3, 3 * m_size, lost, Kind::MissingBytes, 1}));
        }
}

TEST_P(RawDvReading, LostBytesOfALastBlock) {
    m_tape.erase(At(3, m_size - 30), At(3, m_size - 10));
    const Outcome run = ReadAll(m_tape);
    EXPECT_THAT(run.Frames(), ElementsAre(0, 1, 2, 3, 4, 5, 6, 7));
    EXPECT_THAT(run.told, ElementsAre(Irregularity{3, 4 * m_size - 80, 80, Kind::DamagedBlocks, 0}));
}

TEST_P(RawDvReading, LostBytesOfTheFirstFrame) {
    m_tape.erase(At(0, 5000), At(0, 5080));
    const Outcome run = ReadAll(m_tape);
    EXPECT_THAT(run.Frames(), ElementsAre(1, 2, 3, 4, 5, 6, 7));
    EXPECT_THAT(run.told, ElementsAre(Irregularity{0, 0, 80, Kind::MissingBytes, 1}));
}

TEST_P(RawDvReading, HolesOverFrameEnds) {
    // The end of 3 and the beginning of 4.
    m_tape.erase(At(3, m_size - 7000), At(4, 9000));
    const Outcome run = ReadAll(m_tape);
    EXPECT_THAT(run.Frames(), ElementsAre(0, 1, 2, 5, 6, 7));
    EXPECT_THAT(run.told, ElementsAre(Irregularity{3, 3 * m_size, 16'000, Kind::MissingBytes, 2}));
}

TEST_P(RawDvReading, TheTimecodeTellsWhatTheSizeDoesNot) {
    // From the middle of 2 to the end of 4: half a frame is left of three.
    m_tape.erase(At(2, m_size / 2), At(5));
    const Outcome run = ReadAll(m_tape);
    EXPECT_THAT(run.Frames(), ElementsAre(0, 1, 5, 6, 7));
    EXPECT_THAT(run.told, ElementsAre(Irregularity{2, 2 * m_size, m_size / 2 * 5, Kind::MissingBytes, 3}));
}

TEST_P(RawDvReading, FramesThatAreMissingWhole) {
    m_tape.erase(At(3), At(5));
    const Outcome run = ReadAll(m_tape);
    EXPECT_THAT(run.Frames(), ElementsAre(0, 1, 2, 5, 6, 7));
    EXPECT_THAT(run.told, ElementsAre(Irregularity{3, 3 * m_size, 0, Kind::MissingFrames, 2}));
}

TEST_P(RawDvReading, OneWrongTimecodeIsNoHole) {
    Bytes other;
    AppendDifFrame(other, GetParam(), 14);
    std::copy(other.begin(), other.end(), At(3));
    const Outcome run = ReadAll(m_tape);
    EXPECT_EQ(run.places.back().frame, 7);
    EXPECT_TRUE(run.told.empty());
}

TEST_P(RawDvReading, EmptyFramesCount) {
    for (const int fill : {0x00, 0xFF}) {
        Bytes damaged = m_tape;
        std::fill_n(damaged.begin() + 3 * m_size, 2 * m_size, static_cast<std::uint8_t>(fill));
        const Outcome run = ReadAll(damaged);
        EXPECT_THAT(run.Frames(), ElementsAre(0, 1, 2, 5, 6, 7));
        EXPECT_THAT(run.told, ElementsAre(Irregularity{3, 3 * m_size, 2 * m_size, Kind::Unreadable, 2}));
    }
}

TEST_P(RawDvReading, ForeignBytesCountNothing) {
    m_tape.insert(At(5), 1234, 0x55);
    m_tape.insert(At(0), 4000, 0x55);
    const Outcome run = ReadAll(m_tape);
    EXPECT_THAT(run.Frames(), ElementsAre(0, 1, 2, 3, 4, 5, 6, 7));
    EXPECT_THAT(run.told, ElementsAre(Irregularity{0, 0, 4000, Kind::ForeignBytes, 0},
                                      Irregularity{5, 4000 + 5 * m_size, 1234, Kind::ForeignBytes, 0}));
}

TEST_P(RawDvReading, ShortEnds) {
    Bytes cut(m_tape.begin(), m_tape.begin() + 7 * m_size + 99'999);
    const Outcome run = ReadAll(cut);
    EXPECT_EQ(run.places.size(), 7u);
    EXPECT_THAT(run.told, ElementsAre(Irregularity{7, 7 * m_size, 99'999, Kind::CutEnd, 1}));

    std::fill(At(6), m_tape.end(), 0);
    EXPECT_THAT(ReadAll(m_tape).told,
                ElementsAre(Irregularity{6, 6 * m_size, 2 * m_size, Kind::Unreadable, 2}));
    m_tape.resize(static_cast<std::size_t>(6 * m_size + 100));
    EXPECT_THAT(ReadAll(m_tape).told, ElementsAre(Irregularity{6, 6 * m_size, 100, Kind::ForeignBytes, 0}));
}

TEST(RawDvReadingBoth, LineSystemsFollowEachOther) {
    Bytes tape = Tape(true, 3);
    const Bytes ntsc = Tape(false, 12);
    const Bytes pal = Tape(true, 2);
    tape.insert(tape.end(), ntsc.begin(), ntsc.end());
    tape.insert(tape.end(), pal.begin(), pal.end());
    const Outcome run = ReadAll(tape);
    ASSERT_EQ(run.places.size(), 17u);
    EXPECT_EQ(run.places[16], (FilePlace{16, 4 * 1200 + 12 * 1001, 4 * 144'000 + 12 * 120'000}));
    EXPECT_TRUE(run.told.empty());
}

// From 00:00:59;29 the next drop-frame timecode is 00:01:00;02, and from 00:09:59;29 it is 00:10:00;00.
TEST(RawDvReadingBoth, DropFrameTimecodeHasNoHoles) {
    for (const auto& [minute, frames] : {std::pair<int, int>{0x01, 0x02}, {0x10, 0x00}}) {
        Bytes tape = Tape(false, 5);
        const auto setTimecode = [&tape](int frame, int minutes, int seconds, int number) {
            for (int sequence = 0; sequence < 10; ++sequence)
                for (const std::size_t block : {1, 2}) {
                    std::uint8_t* pack =
                        &tape[static_cast<std::size_t>(frame * 10 + sequence) * 12'000 + block * 80 + 6];
                    pack[1] = static_cast<std::uint8_t>(0x40 | number);
                    pack[2] = static_cast<std::uint8_t>(seconds);
                    pack[3] = static_cast<std::uint8_t>(minutes);
                }
        };
        const int before = minute == 0x10 ? 0x09 : 0x00;
        setTimecode(0, before, 0x59, 0x28);
        setTimecode(1, before, 0x59, 0x29);
        for (int i = 0; i < 3; ++i)
            setTimecode(2 + i, minute, 0, frames + i);
        EXPECT_TRUE(ReadAll(tape).told.empty()) << minute;
        tape.erase(tape.begin() + 120'000, tape.begin() + 240'000);
        EXPECT_THAT(ReadAll(tape).told, ElementsAre(Irregularity{1, 120'000, 0, Kind::MissingFrames, 1}));
    }
}

// --- damage at random ---

struct Piece {
    std::int64_t offset = 0;
    bool isIntact = true;
};

// Damages a tape of small differences from frame to frame, and knows which frames it has left whole.
class RandomDamage {
  public:
    explicit RandomDamage(unsigned seed) : m_random(seed) {
        static const Bytes tapes[] = {Tape(false, kFrames), Tape(true, kFrames)};
        m_is625 = seed % 2 != 0;
        m_size = m_is625 ? 144'000 : 120'000;
        m_bytes = tapes[m_is625];
        for (int i = 0; i < kFrames; ++i)
            m_frames.push_back({i * m_size, true});
        for (int i = 0; i < m_damages; ++i)
            Damage();
    }

    static constexpr int kFrames = 4;
    [[nodiscard]] const Bytes& Stream() const { return m_bytes; }
    [[nodiscard]] std::vector<std::int64_t> IntactOffsets() const {
        std::vector<std::int64_t> offsets;
        for (const Piece& frame : m_frames)
            if (frame.isIntact)
                offsets.push_back(frame.offset);
        return offsets;
    }
    /// Of frames with bytes too few or too many anywhere but in their last block; of a single damage only,
    /// since two can make up for each other.
    [[nodiscard]] std::vector<std::int64_t> TornOffsets() const {
        return m_damages == 1 ? m_torn : std::vector<std::int64_t>();
    }

  private:
    void Damage() {
        const auto size = std::ssize(m_bytes);
        const std::int64_t lengths[] = {Number(8), 80, Number(2000), 12'000, Number(m_size)};
        const std::int64_t at = Number(size) - 1;
        const std::int64_t length = std::min<std::int64_t>(lengths[m_random() % 5], size - at);
        const auto from = m_bytes.begin() + at;
        switch (m_random() % 4) {
        case 0:
            Touch(at, length);
            m_bytes.erase(from, from + length);
            Shift(at, -length);
            break;
        case 1: {
            Touch(at, 0);
            Bytes foreign(static_cast<std::size_t>(length));
            std::generate(foreign.begin(), foreign.end(),
                          [this] { return static_cast<std::uint8_t>(m_random()); });
            m_bytes.insert(from, foreign.begin(), foreign.end());
            Shift(at, length);
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
        for (Piece& frame : m_frames) {
            const bool isInside = at < frame.offset + m_size && at + length > frame.offset;
            if (isInside && !(length == 0 && at == frame.offset))
                frame.isIntact = false;
        }
    }
    void Shift(std::int64_t at, std::int64_t by) {
        const std::int64_t inFrame = at % m_size;
        if (inFrame != 0 && inFrame < m_size - std::int64_t{kDifBlockBytes})
            m_torn.push_back(at - inFrame);
        for (Piece& frame : m_frames)
            if (frame.offset >= at)
                frame.offset += by;
    }

    std::mt19937 m_random;
    bool m_is625 = false;
    std::int64_t m_size = 0;
    Bytes m_bytes;
    std::vector<Piece> m_frames;
    std::vector<std::int64_t> m_torn;
    const std::int64_t m_damages = Number(3);
};

TEST(RawDvDamage, AlignmentIsLostNoLongerThanTheDamageLasts) {
    for (unsigned seed = 0; seed < 2000; ++seed) {
        const RandomDamage damage(seed);
        const Outcome run = ReadAll(damage.Stream());
        std::vector<std::int64_t> offsets;
        for (const FilePlace& place : run.places)
            offsets.push_back(place.byteOffset);
        EXPECT_THAT(offsets, testing::IsSupersetOf(damage.IntactOffsets())) << "seed " << seed;
        EXPECT_TRUE(!run.told.empty() || run.places.size() == RandomDamage::kFrames) << "seed " << seed;
        for (std::size_t i = 1; i < run.places.size(); ++i)
            EXPECT_GT(run.places[i].frame, run.places[i - 1].frame) << "seed " << seed;
        // Of a frame that is torn all blocks behind the tear are displaced.
        for (const std::int64_t torn : damage.TornOffsets())
            EXPECT_THAT(offsets, testing::Not(testing::Contains(torn))) << "seed " << seed;
    }
}

} // namespace
} // namespace scenedetect
