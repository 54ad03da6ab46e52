// Raw DV through damage of every kind, judged by which frames come out, under which number, and what is told.
#include "tests/DvFrame.h"
#include "tests/Testing.h"
#include "tests/reading/readers/WaysOfReading.h"

namespace {

using Bytes = std::vector<std::uint8_t>;
using Kind = IrregularityKind;

// The same in all ways.
Outcome ReadAll(const Bytes& stream) {
    const Outcome outcome = ReadAll(stream, Way::File);
    EXPECT_EQ(outcome, ReadAll(stream, Way::Pipe));
    EXPECT_EQ(outcome, ReadAll(stream, Way::TwoThreads));
    EXPECT_TRUE(outcome.isOfStream);
    return outcome;
}

std::vector<std::int64_t> Frames(const Outcome& outcome) {
    std::vector<std::int64_t> frames;
    for (const FilePlace& place : outcome.places)
        frames.push_back(place.frame);
    return frames;
}

Bytes Tape(bool is625, int frames) {
    Bytes tape;
    for (int i = 0; i < frames; ++i)
        AppendDifFrame(tape, is625, i);
    return tape;
}

class RawDvReading : public TestWithParam<bool> {
  protected:
    const std::int64_t m_size = GetParam() ? 144'000 : 120'000;
    Bytes m_tape = Tape(GetParam(), 8);

    [[nodiscard]] Bytes::iterator At(std::int64_t frame, std::int64_t offset = 0) {
        return m_tape.begin() + frame * m_size + offset;
    }
};

INSTANTIATE_TEST_SUITE_P(Systems, RawDvReading, Bool(),
                         [](const auto& each) { return each.param ? "Lines625" : "Lines525"; });

TEST_P(RawDvReading, WholeTapeIsReadInPlace) {
    const Outcome run = ReadAll(m_tape);
    EXPECT_THAT(Frames(run), ElementsAre(0, 1, 2, 3, 4, 5, 6, 7));
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
            EXPECT_THAT(Frames(run), ElementsAre(0, 1, 2, 4, 5, 6, 7)) << lost << " at " << offset;
            EXPECT_THAT(run.told, ElementsAre(Irregularity{3, 3 * m_size, lost, Kind::MissingBytes, 1}));
        }
}

TEST_P(RawDvReading, LostBytesOfALastBlock) {
    for (const int frame : {3, 6}) {
        Bytes damaged = m_tape;
        const auto end = damaged.begin() + (frame + 1) * m_size;
        damaged.erase(end - 30, end - 10);
        const Outcome run = ReadAll(damaged);
        EXPECT_THAT(Frames(run), ElementsAre(0, 1, 2, 3, 4, 5, 6, 7));
        EXPECT_THAT(run.told,
                    ElementsAre(Irregularity{frame, (frame + 1) * m_size - 80, 80, Kind::DamagedBlocks, 0}));
    }
}

TEST_P(RawDvReading, LossesOfMoreThanAFrame) {
    const struct {
        const char* name;
        std::int64_t from, to; // bytes of the tape
        std::vector<std::int64_t> frames;
        Irregularity told;
    } cases[] = {
        {"in the first frame", 5000, 5080, {1, 2, 3, 4, 5, 6, 7}, {0, 0, 80, Kind::MissingBytes, 1}},
        {"over the end of a frame",
         4 * m_size - 7000,
         4 * m_size + 9000,
         {0, 1, 2, 5, 6, 7},
         {3, 3 * m_size, 16'000, Kind::MissingBytes, 2}},
        {"half a frame is left of three: the timecode tells how many were lost",
         2 * m_size + m_size / 2,
         5 * m_size,
         {0, 1, 5, 6, 7},
         {2, 2 * m_size, m_size / 2 * 5, Kind::MissingBytes, 3}},
        {"whole frames",
         3 * m_size,
         5 * m_size,
         {0, 1, 2, 5, 6, 7},
         {3, 3 * m_size, 0, Kind::MissingFrames, 2}},
    };
    for (const auto& each : cases) {
        Bytes damaged = m_tape;
        damaged.erase(damaged.begin() + each.from, damaged.begin() + each.to);
        const Outcome run = ReadAll(damaged);
        EXPECT_EQ(Frames(run), each.frames) << each.name;
        EXPECT_THAT(run.told, ElementsAre(each.told)) << each.name;
    }
}

// Whether the frame has one timecode pack or two in each sequence.
TEST_P(RawDvReading, NoBitOfATimecodeMovesFrames) {
    constexpr std::ptrdiff_t kFirstPack = 86;
    for (const bool isAlone : {false, true}) {
        for (int i = 0; i < 8 && isAlone; ++i) {
            DvFrame frame(GetParam());
            frame.Set({kFirstPack}, TimePack(0, i), 0, 1);
            std::ranges::copy(frame.Bytes(), At(i));
        }
        for (int bit = 0; bit < 8 * 40; ++bit) {
            Bytes damaged = m_tape;
            damaged[static_cast<std::size_t>(bit / 40 * m_size + kFirstPack + bit % 40 / 8)] ^= 1 << bit % 8;
            const Outcome run = ReadAll(damaged, Way::File);
            EXPECT_TRUE(run.told.empty() && run.places.back().frame == 7) << isAlone << ' ' << bit;
        }
    }
}

TEST_P(RawDvReading, WrongTimecodesAreNoGap) {
    const struct {
        const char* name;
        std::vector<int> timecodes;
    } cases[] = {{"ahead", {0, 1, 2, 14, 4, 5, 6, 7}},
                 {"back", {10, 11, 12, 2, 14, 15, 16, 17}},
                 {"two", {0, 1, 2, 14, 1, 5, 6, 7}},
                 {"one frame stands", {0, 1, 2, 2, 4, 5, 6, 7}},
                 {"three frames stand", {0, 1, 1, 1, 1, 5, 6, 7}},
                 {"late", {0, 1, 1, 2, 3, 4, 5, 6}},
                 {"each second", {0, 0, 2, 2, 4, 4, 6, 6}},
                 {"first", {0, 5, 6, 7, 8, 9, 10, 11}},
                 {"last", {0, 1, 2, 3, 4, 5, 6, 9}}};
    for (const auto& each : cases) {
        Bytes tape;
        for (const int timecode : each.timecodes)
            AppendDifFrame(tape, GetParam(), timecode);
        const Outcome run = ReadAll(tape);
        EXPECT_TRUE(run.told.empty() && run.places.back().frame == 7) << each.name;
    }
}

// The two missing frames are found beside misread timecodes of their neighbours.
TEST_P(RawDvReading, GapsAreSeenPastWrongTimecodes) {
    const std::pair<std::vector<int>, int> cases[] = {{{0, 1, 9, 5, 6, 7}, 3}, {{0, 1, 2, 20, 6, 7}, 4}};
    for (const auto& [timecodes, found] : cases) {
        Bytes tape;
        for (const int timecode : timecodes)
            AppendDifFrame(tape, GetParam(), timecode);
        EXPECT_THAT(ReadAll(tape).told,
                    ElementsAre(Irregularity{found, found * m_size, 0, Kind::MissingFrames, 2}));
    }
}

TEST_P(RawDvReading, ZerosOverAFrameEndAreNoLoss) {
    std::fill(At(3, 1000 * 80), At(4, 1100 * 80), 0); // leaves 400 or 700 blocks of the second
    const Outcome run = ReadAll(m_tape);
    EXPECT_THAT(Frames(run), ElementsAre(0, 1, 2, 3, 5, 6, 7));
}

TEST_P(RawDvReading, AFrameInItsPlaceNeedsNoHeader) {
    std::fill(At(3), At(4, 80), 0);
    EXPECT_THAT(Frames(ReadAll(m_tape)), ElementsAre(0, 1, 2, 4, 5, 6, 7));
}

TEST_P(RawDvReading, EmptyFramesCount) {
    for (const int fill : {0x00, 0xFF}) {
        Bytes damaged = m_tape;
        std::fill_n(damaged.begin() + 3 * m_size, 2 * m_size, static_cast<std::uint8_t>(fill));
        const Outcome run = ReadAll(damaged);
        EXPECT_THAT(Frames(run), ElementsAre(0, 1, 2, 5, 6, 7));
        EXPECT_THAT(run.told, ElementsAre(Irregularity{3, 3 * m_size, 2 * m_size, Kind::Unreadable, 2}));
    }
}

TEST_P(RawDvReading, UnknownBytesCountNothing) {
    m_tape.insert(At(5), 1234, 0x55);
    m_tape.insert(At(0), 4000, 0x55);
    const Outcome run = ReadAll(m_tape);
    EXPECT_THAT(Frames(run), ElementsAre(0, 1, 2, 3, 4, 5, 6, 7));
    EXPECT_THAT(run.told, ElementsAre(Irregularity{0, 0, 4000, Kind::UnknownBytes, 0},
                                      Irregularity{5, 4000 + 5 * m_size, 1234, Kind::UnknownBytes, 0}));
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
    EXPECT_THAT(ReadAll(m_tape).told, ElementsAre(Irregularity{6, 6 * m_size, 100, Kind::UnknownBytes, 0}));
}

TEST_P(RawDvReading, AFileThatHasBecomeShorterIsTold) {
    for (const std::int64_t lack : {0, 1000}) {
        testing::internal::CaptureStderr();
        Console console("test");
        auto input = std::make_unique<MemoryInput>(m_tape);
        input->Lack(lack);
        RawDvReader reader(std::move(input), DamageLog(console, "memory"));
        Picture picture;
        int frames = 0;
        while (reader.Next(picture))
            ++frames;
        EXPECT_EQ(frames, 8);
        EXPECT_EQ(testing::internal::GetCapturedStderr().find("has become shorter") != std::string::npos,
                  lack != 0);
    }
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
TEST(RawDvReadingBoth, DropFrameTimecodeHasNoGaps) {
    for (const auto& [minute, first] : {std::pair{1, 2}, {10, 0}}) {
        Bytes tape;
        for (int i = -3; i < 3; ++i) {
            DvFrame frame(false);
            frame.SetTimecode(TimePack(minute * 60 - (i < 0), i < 0 ? 30 + i : first + i, true));
            tape.insert(tape.end(), frame.Bytes().begin(), frame.Bytes().end());
        }
        EXPECT_TRUE(ReadAll(tape).told.empty()) << minute;
        tape.erase(tape.begin() + 240'000, tape.begin() + 360'000);
        EXPECT_THAT(ReadAll(tape).told, ElementsAre(Irregularity{2, 240'000, 0, Kind::MissingFrames, 1}));
    }
}

} // namespace
