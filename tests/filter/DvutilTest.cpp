#include "filter/Dvutil.h"

#include "tests/DvFrame.h"
#include "tests/Testing.h"

namespace {

/// Where PC0 of a subcode or VAUX pack lies in its sequence.
constexpr int Subcode(int slot) {
    return 80 + slot / 6 * 80 + 3 + slot % 6 * 8 + 3;
}
constexpr int Vaux(int pack) {
    return 240 + pack / 15 * 80 + 3 + pack % 15 * 5;
}

/// A frame of twelve sequences with one pack, which may say that it has ten.
DvFrame Frame(bool is625, int sequence, int offset, const Pack& pack) {
    DvFrame frame;
    frame.Bytes()[3] = is625 ? 0xFF : 0x7F;
    return frame.Set({offset}, pack, sequence, sequence + 1);
}

struct Time {
    bool found;
    int hours = -1, minutes = -1, seconds = -1, frames = -1;
    bool operator==(const Time&) const = default;
};

Time Timecode(DvFrame frame) {
    Time time{};
    time.found = Dvutil().GetTimeCode(frame.Bytes(), time.hours, time.minutes, time.seconds, time.frames);
    return time;
}

Time RecordingTime(DvFrame frame) {
    Time time{};
    time.found =
        Dvutil().GetRecordingTime(frame.Bytes(), time.hours, time.minutes, time.seconds, time.frames);
    return time;
}

TEST(Dvutil, TimecodeValues) {
    for (const auto& [pack, time] : std::vector<std::pair<Pack, Time>>{
             {{0x13, 0x29, 0x59, 0x59, 0x03}, {true, 3, 59, 59, 29}},
             {{0x13, 0x00, 0x00, 0x00, 0x04}, {false, 4, 0, 0, 0}},
             {{0x13, 0xC1, 0x82, 0x83, 0xC1}, {true, 1, 3, 2, 1}}, // flag bits do not count
             {{0x13, 0x30, 0x60, 0x60, 0x00}, {true, 0, 60, 60, 30}},
             {{0x13, 0x31, 0x00, 0x00, 0x00}, {false, 0, 0, 0, 31}},
             {{0x13, 0x00, 0x61, 0x00, 0x00}, {false, 0, 0, 61, 0}},
             {{0x13, 0x00, 0x00, 0x61, 0x00}, {false, 0, 61, 0, 0}}})
        EXPECT_EQ(Timecode(Frame(true, 0, Subcode(0), pack)), time) << int{pack[1]} << ' ' << int{pack[4]};
}

TEST(Dvutil, TimecodeIsTheFirstInTheFrame) {
    const Pack early{0x13, 0x01, 0, 0, 0};
    const Pack late{0x13, 0x02, 0, 0, 0};
    EXPECT_EQ(Timecode(Frame(true, 2, Subcode(5), late).Set({Subcode(11)}, early, 1, 2)).frames, 1);
    EXPECT_EQ(Timecode(Frame(true, 1, Subcode(7), late).Set({Subcode(4)}, early, 1, 2)).frames, 1);
    // Neither VAUX nor the place after the last slot.
    EXPECT_EQ(Timecode(Frame(true, 0, Vaux(0), late).Set({Subcode(5) + 8}, late, 0, 1)), Time{false});
    // Sequence 11 belongs to a frame of 625 lines only.
    EXPECT_TRUE(Timecode(Frame(true, 11, Subcode(11), early)).found);
    EXPECT_FALSE(Timecode(Frame(false, 11, Subcode(11), early)).found);
}

TEST(Dvutil, TimecodeWordAndFlag) {
    for (const int set : {0, 1}) {
        const auto frames = static_cast<std::uint8_t>(0x55 | set << 7);
        std::uint32_t word = 0;
        bool flag = set == 0;
        DvFrame frame = Frame(false, 0, Subcode(3), {0x13, frames, 0xD9, 0xD8, 0xC1});
        ASSERT_TRUE(Dvutil().GetTimeCodeInBCD(frame.Bytes(), word, flag));
        EXPECT_EQ(word, 0x01585915u);
        EXPECT_EQ(flag, set == 1);
    }
}

TEST(Dvutil, RecordingTime) {
    const Pack pack{0x63, 0x12, 0x34, 0x56, 0x23};
    const Time time{true, 23, 56, 34, 12};
    EXPECT_EQ(RecordingTime(Frame(true, 0, Vaux(0), pack)), time);
    EXPECT_EQ(RecordingTime(Frame(false, 9, Vaux(44), pack)), time);
    EXPECT_EQ(RecordingTime(Frame(false, 10, Vaux(0), pack)), Time{false});
    EXPECT_EQ(RecordingTime(Frame(true, 0, Vaux(44) + 5, pack)), Time{false});
    // 45 frames (3 and 15) mean none; nothing else is checked.
    EXPECT_EQ(RecordingTime(Frame(true, 0, Vaux(0), {0x63, 0xFF, 0x7F, 0x7F, 0x3F})),
              (Time{true, 45, 85, 85, 0}));
    EXPECT_EQ(RecordingTime(Frame(true, 0, Vaux(0), {0x63, 0x3E, 0, 0, 0})), (Time{true, 0, 0, 0, 44}));
}

TEST(Dvutil, ShortFramesFail) {
    for (const auto& [is625, bytes, found] : {std::tuple{true, 144000, true},
                                              {true, 143999, false},
                                              {false, 120000, true},
                                              {false, 119999, false},
                                              {false, 3, false}}) {
        DvFrame frame(is625);
        frame.SetTimecode({0x13}).SetTime({0x63}).Cut(static_cast<std::size_t>(bytes));
        EXPECT_EQ(Timecode(frame).found, found) << bytes;
        EXPECT_EQ(RecordingTime(frame).found, found) << bytes;
    }
}

TEST(Dvutil, DisplayAspect) {
    const auto aspect = [](DvFrame frame) {
        double ratio = 0;
        return Dvutil().GetDisplayAspect(frame.Bytes(), ratio) ? ratio : -1;
    };
    for (const auto& [select, ratio] :
         {std::pair{0xF8, 4.0 / 3}, {1, 16.0 / 9}, {2, 16.0 / 9}, {6, 14.0 / 9}, {7, 16.0 / 9}})
        EXPECT_DOUBLE_EQ(
            aspect(Frame(true, 0, Vaux(20), {0x61, 0, static_cast<std::uint8_t>(select)}).Cut(12000)), ratio);
    DvFrame several = Frame(true, 0, Vaux(1), {0x61}); // the last of the first sequence counts
    several.Set({Vaux(44)}, {0x61, 0, 6}, 0, 1).Set({Vaux(0)}, {0x61, 0, 2}, 1);
    EXPECT_DOUBLE_EQ(aspect(several), 14.0 / 9);
    EXPECT_EQ(aspect(several.Cut(11999)), -1);
    EXPECT_EQ(aspect(Frame(true, 1, Vaux(0), {0x61})), -1);
}

} // namespace
