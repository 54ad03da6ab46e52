#include "reading/timing/FilmPart.h"
#include "tests/Testing.h"

namespace {

TEST(FilmPart, IsWrittenAsKOfN) {
    EXPECT_EQ(ParsePartChoice("3/16"), (PartChoice{3, 16}));
    for (const char* wrong : {"", "3", "0/3", "4/3", "3/", "/3", "1/0", "-1/3", "1/3 ", "1/100001"})
        EXPECT_FALSE(ParsePartChoice(wrong)) << wrong;
}

// 100 bytes in four parts: key frames at 0, 20, 30 and 90, one of which shares its place with another packet.
TEST(FilmPart, PartsMeetAtTheFirstKeyFrameOfTheirBytes) {
    const std::pair<std::int64_t, std::int64_t> edges[] = {{-2, 30}, {30, 90}, {90, 90}, {90, -2}};
    for (std::int64_t k = 1; k <= 4; ++k) {
        FilmPart part({k, 4}, 100);
        EXPECT_FALSE(part.HasPackets());
        for (int reading = 0; reading < 2; ++reading) // the file may be opened again
            for (const auto& [offset, isKey] : {std::pair{0, true},
                                                {20, true},
                                                {26, false},
                                                {26, true},
                                                {30, true},
                                                {60, false},
                                                {90, true}})
                part.NotePacket(offset, isKey);
        const auto [first, last] = edges[k - 1];
        EXPECT_EQ(part.BeginsWithFile(), k == 1);
        for (const std::int64_t at : {-1, 0, 20, 26, 30, 60, 90}) {
            EXPECT_EQ(part.IsFirst({0, 0, at}), at == first) << k << " at " << at;
            EXPECT_EQ(part.IsLast({0, 0, at}), at == last) << k << " at " << at;
        }
    }
}

} // namespace
