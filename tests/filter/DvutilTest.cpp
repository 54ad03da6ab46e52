#include "filter/Dvutil.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <vector>

namespace scenedetect {
namespace {

using testing::ElementsAre;

constexpr std::size_t kSequence = 12000;

/// Where PC0 of a subcode or VAUX pack lies in its sequence.
constexpr std::size_t Subcode(std::size_t slot) {
    return 80 + slot / 6 * 80 + 3 + slot % 6 * 8 + 3;
}
constexpr std::size_t Vaux(std::size_t pack) {
    return 240 + pack / 15 * 80 + 3 + pack % 15 * 5;
}

class Frame {
  public:
    explicit Frame(bool is625, std::size_t sequences = 12) : m_bytes(sequences * kSequence, 0xFF) {
        m_bytes[3] = is625 ? 0xFF : 0x7F;
    }
    /// Bytes in the order PC0 to PC4.
    Frame& Pack(std::size_t sequence, std::size_t offset, const std::array<std::uint8_t, 5>& bytes) {
        std::copy(bytes.begin(), bytes.end(),
                  m_bytes.begin() + static_cast<std::ptrdiff_t>(sequence * kSequence + offset));
        return *this;
    }
    Frame& Resize(std::size_t bytes) {
        m_bytes.resize(bytes);
        return *this;
    }
    operator std::span<const std::uint8_t>() const { return m_bytes; }

  private:
    std::vector<std::uint8_t> m_bytes;
};

struct Time {
    bool found;
    int hours = -1, minutes = -1, seconds = -1, frames = -1;
    bool operator==(const Time&) const = default;
};

Time Timecode(std::span<const std::uint8_t> frame) {
    Time time{};
    time.found = Dvutil().GetTimeCode(frame, time.hours, time.minutes, time.seconds, time.frames);
    return time;
}

Time RecordingTime(std::span<const std::uint8_t> frame) {
    Time time{};
    time.found = Dvutil().GetRecordingTime(frame, time.hours, time.minutes, time.seconds, time.frames);
    return time;
}

TEST(Dvutil, TimecodeValues) {
    struct Case {
        const char* name;
        std::array<std::uint8_t, 5> pack;
        Time time;
    };
    const Case cases[] = {
        {"last usable", {0x13, 0x29, 0x59, 0x59, 0x03}, {true, 3, 59, 59, 29}},
        {"four hours", {0x13, 0x00, 0x00, 0x00, 0x04}, {false, 4, 0, 0, 0}},
        {"flag bits do not count", {0x13, 0xC1, 0x82, 0x83, 0xC1}, {true, 1, 3, 2, 1}},
        {"limits are inclusive", {0x13, 0x30, 0x60, 0x60, 0x00}, {true, 0, 60, 60, 30}},
        {"too many frames", {0x13, 0x31, 0x00, 0x00, 0x00}, {false, 0, 0, 0, 31}},
        {"too many seconds", {0x13, 0x00, 0x61, 0x00, 0x00}, {false, 0, 0, 61, 0}},
        {"too many minutes", {0x13, 0x00, 0x00, 0x61, 0x00}, {false, 0, 61, 0, 0}},
        {"digits above nine", {0x13, 0x0F, 0x0A, 0x00, 0x00}, {true, 0, 0, 10, 15}},
    };
    for (const Case& c : cases)
        EXPECT_EQ(Timecode(Frame(true).Pack(0, Subcode(0), c.pack)), c.time) << c.name;
}

TEST(Dvutil, TimecodeIsTheFirstInTheFrame) {
    const std::array<std::uint8_t, 5> early{0x13, 0x01, 0, 0, 0};
    const std::array<std::uint8_t, 5> late{0x13, 0x02, 0, 0, 0};
    EXPECT_EQ(Timecode(Frame(true).Pack(2, Subcode(5), late).Pack(1, Subcode(11), early)).frames, 1);
    EXPECT_EQ(Timecode(Frame(true).Pack(1, Subcode(7), late).Pack(1, Subcode(4), early)).frames, 1);
    // Neither VAUX nor the place after the last slot.
    EXPECT_EQ(Timecode(Frame(true).Pack(0, Vaux(0), late).Pack(0, Subcode(5) + 8, late)), Time{false});
    // Sequence 11 belongs to a frame of 625 lines only.
    EXPECT_TRUE(Timecode(Frame(true).Pack(11, Subcode(11), early)).found);
    EXPECT_FALSE(Timecode(Frame(false).Pack(11, Subcode(11), early)).found);
}

TEST(Dvutil, TimecodeWordAndFlag) {
    for (const bool set : {false, true}) {
        const auto first = static_cast<std::uint8_t>(set ? 0xD5 : 0x55);
        std::uint32_t word = 0;
        bool flag = !set;
        ASSERT_TRUE(Dvutil().GetTimeCodeInBCD(
            Frame(false).Pack(0, Subcode(3), {0x13, first, 0xD9, 0xD8, 0xC1}), word, flag));
        EXPECT_EQ(word, 0x01585915u);
        EXPECT_EQ(flag, set);
    }
}

TEST(Dvutil, RecordingTime) {
    struct Case {
        const char* name;
        std::array<std::uint8_t, 5> pack;
        Time time;
    };
    const Case cases[] = {
        {"plain", {0x63, 0x12, 0x34, 0x56, 0x23}, {true, 23, 56, 34, 12}},
        {"no frames", {0x63, 0xFF, 0x34, 0x56, 0x23}, {true, 23, 56, 34, 0}}, // 3 and 15
        {"44 frames", {0x63, 0x3E, 0, 0, 0}, {true, 0, 0, 0, 44}},
        {"no range", {0x63, 0x00, 0x7F, 0x7F, 0x3F}, {true, 45, 85, 85, 0}},
    };
    for (const Case& c : cases)
        EXPECT_EQ(RecordingTime(Frame(true).Pack(0, Vaux(0), c.pack)), c.time) << c.name;
    EXPECT_EQ(RecordingTime(Frame(true)), Time{false});
    EXPECT_EQ(RecordingTime(Frame(false).Pack(9, Vaux(44), cases[0].pack)), cases[0].time);
    EXPECT_FALSE(RecordingTime(Frame(false).Pack(10, Vaux(0), cases[0].pack)).found);
    EXPECT_FALSE(RecordingTime(Frame(true).Pack(0, Vaux(44) + 5, cases[0].pack)).found);
}

TEST(Dvutil, ShortFramesFail) {
    const auto full = [](bool is625) {
        return Frame(is625).Pack(0, Subcode(0), {0x13, 0, 0, 0, 0}).Pack(0, Vaux(0), {0x63, 0, 0, 0, 0});
    };
    for (const auto& [is625, bytes, found] : {std::tuple{true, 144000, true},
                                              {true, 143999, false},
                                              {false, 120000, true},
                                              {false, 119999, false},
                                              {false, 4, false},
                                              {false, 3, false},
                                              {false, 0, false}}) {
        const Frame frame = full(is625).Resize(static_cast<std::size_t>(bytes));
        EXPECT_EQ(Timecode(frame).found, found) << bytes;
        EXPECT_EQ(RecordingTime(frame).found, found) << bytes;
    }
}

TEST(Dvutil, DisplayAspect) {
    double ratio = 0;
    for (const auto& [select, expected] :
         {std::pair{0, 4.0 / 3}, {1, 16.0 / 9}, {2, 16.0 / 9}, {5, 16.0 / 9}, {6, 14.0 / 9}, {7, 16.0 / 9}}) {
        const auto byte = static_cast<std::uint8_t>(0xF8 | select);
        EXPECT_TRUE(
            Dvutil().GetDisplayAspect(Frame(true, 1).Pack(0, Vaux(20), {0x61, 0, byte, 0, 0}), ratio));
        EXPECT_DOUBLE_EQ(ratio, expected) << select;
    }
    // The last of the first sequence counts.
    EXPECT_TRUE(Dvutil().GetDisplayAspect(Frame(true)
                                              .Pack(0, Vaux(1), {0x61, 0, 0, 0, 0})
                                              .Pack(0, Vaux(44), {0x61, 0, 6, 0, 0})
                                              .Pack(1, Vaux(0), {0x61, 0, 2, 0, 0}),
                                          ratio));
    EXPECT_DOUBLE_EQ(ratio, 14.0 / 9);
    EXPECT_FALSE(Dvutil().GetDisplayAspect(Frame(true).Pack(1, Vaux(0), {0x61, 0, 0, 0, 0}), ratio));
    EXPECT_FALSE(
        Dvutil().GetDisplayAspect(Frame(true).Pack(0, Vaux(0), {0x61, 0, 0, 0, 0}).Resize(11999), ratio));
    EXPECT_DOUBLE_EQ(ratio, 14.0 / 9);
}

} // namespace
} // namespace scenedetect
