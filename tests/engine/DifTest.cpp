#include "engine/Dif.h"
#include "tests/Testing.h"

namespace {

TEST(Dif, BlocksHaveTheirPlaces) {
    using enum DifSection;
    const struct {
        int block;
        DifBlockId id;
        std::uint8_t firstIdByte;
    } cases[] = {
        {0, {Header, 0, 0}, 0x1F},  {1, {Subcode, 0, 0}, 0x3F},   {2, {Subcode, 0, 1}, 0x3F},
        {3, {Vaux, 0, 0}, 0x5F},    {5, {Vaux, 0, 2}, 0x5F},      {6, {Audio, 0, 0}, 0x7F},
        {7, {Video, 0, 0}, 0x9F},   {21, {Video, 0, 14}, 0x9F},   {22, {Audio, 0, 1}, 0x7F},
        {23, {Video, 0, 15}, 0x9F}, {149, {Video, 0, 134}, 0x9F}, {150, {Header, 1, 0}, 0x1F},
    };
    for (const auto& test : cases) {
        EXPECT_EQ(DifBlockIdAt(test.block), test.id) << test.block;
        EXPECT_EQ(SectionOfDifBlock(test.firstIdByte), test.id.section);
    }
    // The last pack of a block, and the first of the next and of the next sequence.
    EXPECT_EQ(kSubcodePacks.Offset(5), 80u + 3 + 5 * 8 + 3);
    EXPECT_EQ(kSubcodePacks.Offset(6), 2 * 80u + 3 + 3);
    EXPECT_EQ(kSubcodePacks.Offset(12), 12'000u + 80 + 3 + 3);
    EXPECT_EQ(kVauxPacks.Offset(14), 3 * 80u + 3 + 14 * 5);
    EXPECT_EQ(kVauxPacks.Offset(15), 4 * 80u + 3);
    EXPECT_EQ(kVauxPacks.Offset(45), 12'000u + 3 * 80 + 3);
    EXPECT_EQ(kAauxPacks.Offset(8), 134 * 80u + 3);
    EXPECT_EQ(kAauxPacks.Offset(9), 12'000u + 6 * 80 + 3);
    EXPECT_EQ(kDifFrameBytes525, 120'000u);
    EXPECT_EQ(kDifFrameBytes625, 144'000u);
    for (int block = 0; block < kDifSequences625 * kDifSequenceBlocks; ++block) {
        const DifBlockId id = DifBlockIdAt(block);
        EXPECT_EQ(id.sequence * kDifSequenceBlocks + DifBlockInSequence(id.section, id.number), block);
    }
}

} // namespace
