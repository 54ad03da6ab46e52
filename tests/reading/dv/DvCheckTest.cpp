// Which line system a frame is of, judged by its headers, and which profile.
#include "reading/dv/DvCheck.h"
#include "tests/DvFrame.h"
#include "tests/Testing.h"

namespace {

using Bytes = std::vector<std::uint8_t>;

class LineSystem : public TestWithParam<bool> {
  protected:
    LineSystem() { AppendDifFrame(m_frame, GetParam(), 0); }
    void DamageHeaders(int headers, std::size_t byte, std::uint8_t bits) {
        for (int i = 0; i < headers; ++i)
            m_frame[static_cast<std::size_t>(i) * 12'000 + byte] ^= bits;
    }
    const DvSystem m_system = GetParam() ? DvSystem::Lines625 : DvSystem::Lines525;
    Bytes m_frame;
};
INSTANTIATE_TEST_SUITE_P(Systems, LineSystem, Bool(),
                         [](const auto& each) { return each.param ? "Lines625" : "Lines525"; });

TEST_P(LineSystem, MostHeadersDecide) {
    EXPECT_EQ(IdentifyDvFrame(m_frame), m_system);
    DamageHeaders(4, 3, 0x80);
    EXPECT_EQ(IdentifyDvFrame(m_frame), m_system);
    DamageHeaders(GetParam() ? 12 : 10, 3, 0x80); // all but those four are wrong now
    EXPECT_NE(VoteDvSystem(m_frame), m_system);
    EXPECT_EQ(IdentifyDvFrame(m_frame), std::nullopt) << "not of its size";
}

TEST_P(LineSystem, HeadersThatAreNoneHaveNoVote) {
    DamageHeaders(9, 3, 0x80);
    DamageHeaders(9, 0, 0x80);
    EXPECT_EQ(IdentifyDvFrame(m_frame), m_system);
    EXPECT_EQ(IdentifyDvFrame(Bytes(m_frame.size())), std::nullopt);
    EXPECT_EQ(IdentifyDvFrame({}), std::nullopt);
    m_frame.push_back(0);
    EXPECT_EQ(VoteDvSystem(m_frame), m_system);
    EXPECT_EQ(IdentifyDvFrame(m_frame), std::nullopt);
}

// The only source pack, which tells 50 Mbit/s, lies in a block that is not where its ID belongs.
TEST(DvProfileOfFrame, PacksOutOfTheirPlacesDoNotCount) {
    testing_support::DvFrame frame(false);
    frame.Set({243}, {0x60, 0xFF, 0xFF, 0x04, 0xFF}, 8, 9);
    EXPECT_EQ(ProfileOfDvFrame(frame.Bytes(), DvSystem::Lines525), DvProfile::Dv50);
    ++frame.Bytes()[8 * 12'000 + 240 + 2];
    EXPECT_EQ(ProfileOfDvFrame(frame.Bytes(), DvSystem::Lines525), DvProfile::Dv25);
}

} // namespace
