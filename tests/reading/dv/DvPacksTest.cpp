// What is read from one frame: packs through damage, and the status of its video blocks.
#include "reading/dv/DvPacks.h"
#include "products/tape/AudioStatus.h"
#include "products/tape/BlockStatus.h"
#include "tests/DvFrame.h"
#include "tests/Testing.h"

namespace {

using namespace std::chrono_literals;

constexpr Pack kNothing = {0xFF, 0xFF, 0xFF, 0xFF, 0xFF};

class FramePacks : public TestWithParam<bool> {
  protected:
    [[nodiscard]] DvPacks Read() {
        return ReadDvPacks(m_frame.Bytes(), GetParam() ? DvSystem::Lines625 : DvSystem::Lines525);
    }
    DvFrame m_frame{GetParam()};
};
INSTANTIATE_TEST_SUITE_P(Systems, FramePacks, Bool(),
                         [](const auto& each) { return each.param ? "Lines625" : "Lines525"; });

TEST_P(FramePacks, AllAreRead) {
    EXPECT_EQ(Read(), DvPacks());
    m_frame.SetTimecode({0x13, 0xC0 | 0x24, 0x80 | 0x59, 0x80 | 0x58, 0xC0 | 0x23}); // flags all over
    m_frame.SetDate({0x62, 0xFF, 0xC0 | 0x29, 0xE0 | 0x02, 0x04});
    m_frame.SetTime({0x63, 0xFF, 0x80 | 0x07, 0x80 | 0x06, 0xC0 | 0x05});
    m_frame.SetSourceControl({0x61, 0x3F, 0xC8 | 2, 0xFC, 0xFF});
    m_frame.SetMarks(0x4F);
    m_frame.SetAudio(0xD1);
    const DvPacks packs = Read();
    EXPECT_EQ(packs.timecode, (DvTimecode{23, 58, 59, 24, true}));
    EXPECT_EQ(packs.date, std::chrono::February / 29 / 2004);
    EXPECT_EQ(packs.time, 5h + 6min + 7s);
    EXPECT_EQ(packs.aspect, DvAspect::Full16By9);
    EXPECT_EQ(packs.audio, (DvAudioFormat{32000, 12, 4, false}));
    EXPECT_TRUE(packs.isRecordingStart && !packs.isRecordingEnd);
    m_frame.SetMarks(0x8F);
    EXPECT_TRUE(!Read().isRecordingStart && Read().isRecordingEnd);
    m_frame.Bytes().pop_back();
    EXPECT_EQ(Read(), DvPacks()) << "a frame cut short";
}

TEST_P(FramePacks, InvalidOnesAreLeftOut) {
    const Pack timecodes[] = {{0x13, 0x30, 0, 0, 0}, {0x13, 0x0A, 0, 0, 0}, {0x13, 0, 0x60, 0, 0},
                              {0x13, 0, 0, 0x60, 0}, {0x13, 0, 0, 0, 0x24}, {0x13, 0xFF, 0xFF, 0xFF, 0xFF}};
    for (const Pack& pack : timecodes) {
        m_frame.SetTimecode(pack);
        EXPECT_FALSE(Read().timecode);
    }
    const Pack dates[] = {{0x62, 0xFF, 0x30, 0x02, 0x04}, {0x62, 0xFF, 0x29, 0x02, 0x03},
                          {0x62, 0xFF, 0x00, 0x01, 0x03}, {0x62, 0xFF, 0x01, 0x00, 0x03},
                          {0x62, 0xFF, 0x01, 0x13, 0x03}, {0x62, 0xFF, 0x01, 0x01, 0xA3}};
    for (const Pack& pack : dates) {
        m_frame.SetDate(pack);
        EXPECT_FALSE(Read().date);
    }
    m_frame.SetTimecode({0x13, 0x29, 0, 0, 0});
    EXPECT_EQ(Read().timecode.has_value(), !GetParam()) << "frame 29 is one of 525 lines only";
}

TEST_P(FramePacks, TheCenturyTurnsAt75) {
    for (const auto& [digits, year] : {std::pair(0x74, 2074), {0x75, 1975}, {0x99, 1999}, {0x00, 2000}}) {
        m_frame.SetDate({0x62, 0xFF, 1, 1, static_cast<std::uint8_t>(digits)});
        EXPECT_EQ(Read().date->year(), std::chrono::year(year));
    }
}

TEST_P(FramePacks, MostSequencesDecide) {
    m_frame.SetTime(TimePack(3600));
    m_frame.Set({248}, TimePack(7200), 0, 3);              // left over from another recording
    m_frame.Set({248}, {0x63, 0xFF, 0x7A, 0x7A, 0x3A}, 8); // damaged
    EXPECT_EQ(Read().time, 1h);
    m_frame.SetTime(kNothing);
    m_frame.Set({248}, TimePack(7200), 9, 10);
    EXPECT_EQ(Read().time, 2h) << "one that is left";
}

TEST_P(FramePacks, TheFirstAudioChannelMarks) {
    const int half = m_frame.Sequences() / 2;
    m_frame.SetMarks(0xCF);
    m_frame.Set({483}, {0x51, 0x3F, 0x4F, 0xA0, 0xFF}, half);
    EXPECT_FALSE(Read().isRecordingStart) << "audio dubbed on the second";
    m_frame.Set({483}, kNothing, 0, half);
    EXPECT_TRUE(Read().isRecordingStart);
}

TEST_P(FramePacks, Aspects) {
    // PC2 and PC3 as ffmpeg writes them (4:3, and 16:9 of SMPTE 314M and IEC 61834), then by BCSYS.
    const struct {
        std::uint8_t pc2, pc3;
        std::optional<DvAspect> aspect;
    } cases[] = {{0xC8, 0xFC, DvAspect::Full4By3},       {0xCA, 0xFC, DvAspect::Full16By9},
                 {0xCF, 0xFC, DvAspect::Full16By9},      {0xC9, 0xFC, DvAspect::Letterbox16By9},
                 {0xC9, 0xFD, DvAspect::Letterbox14By9}, {0xCB, 0xFD, DvAspect::Letterbox16By9},
                 {0xCE, 0xFD, DvAspect::Full14By9},      {0xFF, 0xFF, std::nullopt}};
    for (const auto& each : cases) {
        m_frame.SetSourceControl({0x61, 0x3F, each.pc2, each.pc3, 0xFF});
        EXPECT_EQ(Read().aspect, each.aspect) << int{each.pc2} << ' ' << int{each.pc3};
    }
}

TEST_P(FramePacks, AudioFormats) {
    // PC1, PC2 and PC4; the first two as ffmpeg writes them.
    const struct {
        std::uint8_t pc1, pc2, pc4;
        std::optional<DvAudioFormat> format;
    } cases[] = {{0xD4, 0x00, 0x80, DvAudioFormat{48000, 16, 2, false}},
                 {0xD0, 0x00, 0x90, DvAudioFormat{32000, 16, 2, false}},
                 {0x54, 0x30, 0xD1, DvAudioFormat{32000, 12, 4, true}},
                 {0x40, 0x0F, 0xC8, DvAudioFormat{44100, 16, 2, true}},
                 {0x40, 0x00, 0xC2, DvAudioFormat{48000, 20, 2, true}},
                 {0x40, 0x00, 0xD8, std::nullopt} /* rate */,
                 {0x40, 0x00, 0xC3, std::nullopt} /* quantisation */,
                 {0x40, 0x40, 0xC0, std::nullopt} /* channels */};
    const int half = m_frame.Sequences() / 2;
    for (const auto& each : cases) {
        m_frame.SetAudio(0xC0);
        m_frame.Set({4323}, {0x50, each.pc1, each.pc2, 0xE0, each.pc4}, 0, half);
        EXPECT_EQ(Read().audio, each.format.value_or(DvAudioFormat{48000, 16, 2, false}))
            << int{each.pc2} << ' ' << int{each.pc4};
    }
}

TEST_P(FramePacks, AudioErrors) {
    const bool is625 = GetParam();
    const DvSystem system = is625 ? DvSystem::Lines625 : DvSystem::Lines525;
    const auto read = [&] { return ReadAudioStatus(m_frame.Bytes(), system, *Read().audio); };
    const auto at = [this](int sequence, int block, int offset) {
        return m_frame.Bytes().begin() + sequence * 12'000 + (6 + 16 * block) * 80 + 8 + offset;
    };
    // The last sample of every block is one of those that not all frames have: of 54 blocks 1,890 to 1,943,
    // of 45 1,575 to 1,619.
    const int half = m_frame.Sequences() / 2;
    m_frame.SetAudio(0xC0).FillAudio([] { return std::uint8_t{1}; });
    EXPECT_EQ(read(), AudioStatus());
    for (int block = 0; block < half * 9; ++block)
        *at(block / 9, block % 9, 70) = 0x80, *at(block / 9, block % 9, 71) = 0;
    EXPECT_EQ(read(), (AudioStatus{is625 ? 1920 - 1890 : 1602 - 1575, false}));
    // By the shuffling of the standard: the first sample that is too many, and the one before it.
    m_frame.FillAudio([] { return std::uint8_t{1}; });
    const auto put = [&](int sequence, int block) {
        *at(half + sequence, block, 70) = 0x80, *at(half + sequence, block, 71) = 0;
    };
    put(4, 1);
    EXPECT_EQ(read(), AudioStatus());
    put(is625 ? 1 : 2, 7);
    EXPECT_EQ(read(), (AudioStatus{1, false}));
    // Two channels in three bytes, one of which is muted.
    m_frame.SetAudio(0xD1).FillAudio([count = 0]() mutable {
        return std::array<std::uint8_t, 3>{0x80, 0x80, 0x08}[static_cast<std::size_t>(count++ % 3)];
    });
    EXPECT_EQ(read(), (AudioStatus{0, true}));
    m_frame.Set({4323}, {0x50, 0xC0, 0x2F, 0xE0, 0xD1});
    EXPECT_EQ(read(), AudioStatus()) << "not recorded";
}

TEST_P(FramePacks, NoVideoBlockIsMissed) {
    for (int sequence = 0; sequence < m_frame.Sequences(); ++sequence)
        for (int i = 0; i < 135; ++i) {
            m_frame.SetStatus(sequence, i, 10);
            EXPECT_EQ(ReadBlockStatus(m_frame.Bytes()), BlockStatus{.fromPrevious = 1});
            m_frame.SetStatus(sequence, i, 0);
        }
}

TEST_P(FramePacks, StatusValues) {
    for (int status = 0; status < 16; ++status)
        m_frame.SetStatus(status % 10, 8 * status, status);
    EXPECT_EQ(ReadBlockStatus(m_frame.Bytes()), (BlockStatus{2, 2, 2, 2, 7}));
    // Neither a block that is not there nor an audio block's samples are counted.
    auto& bytes = m_frame.Bytes();
    std::fill_n(bytes.begin() + 2 * 12'000, 12'000, std::uint8_t{0xFF}); // with 2 and 12
    bytes[6 * 80 + 3] = 0xF0;
    EXPECT_EQ(ReadBlockStatus(bytes), (BlockStatus{1, 1, 2, 2, 7}));
}

} // namespace
