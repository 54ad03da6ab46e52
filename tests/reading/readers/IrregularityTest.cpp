#include "reading/readers/Irregularity.h"
#include "tests/Testing.h"

namespace {

using Kind = IrregularityKind;

TEST(Irregularity, IsASentenceAboutTheFile) {
    const struct {
        Irregularity irregularity;
        const char* text;
    } cases[] = {
        {{0, 0, 4000, Kind::UnknownBytes, 0}, "4000 bytes at byte 0 are no DV, before frame 0"},
        {{7, 800, 1, Kind::UnknownBytes, 0}, "1 byte at byte 800 is no DV, before frame 7"},
        {{25, 90, 120'000, Kind::Unreadable, 1}, "frame 25 at byte 90 is left out: no DV in 120000 bytes"},
        {{25, 90, 240'000, Kind::Unreadable, 2},
         "frames 25 to 26 at byte 90 are left out: no DV in 240000 bytes"},
        {{3, 90, 80, Kind::MissingBytes, 1}, "frame 3 at byte 90 is left out: 80 bytes of it are missing"},
        {{3, 90, 1, Kind::MissingBytes, 1}, "frame 3 at byte 90 is left out: 1 byte of it is missing"},
        {{3, 90, 9000, Kind::MissingBytes, 3},
         "frames 3 to 5 at byte 90 are left out: 9000 bytes of them are missing"},
        {{4, 90, 0, Kind::MissingFrames, 1}, "frame 4 is missing at byte 90, as the timecode tells"},
        {{4, 90, 0, Kind::MissingFrames, 10}, "frames 4 to 13 are missing at byte 90, as the timecode tells"},
        {{5, 90, 80, Kind::DamagedBlocks, 0}, "frame 5 has 1 damaged block, the first at byte 90"},
        {{5, 90, 240, Kind::DamagedBlocks, 0}, "frame 5 has 3 damaged blocks, the first at byte 90"},
        {{59, 90, 700, Kind::CutEnd, 1}, "ends at byte 90 inside frame 59, which is left out"},
    };
    for (const auto& each : cases)
        EXPECT_EQ(IrregularityText(each.irregularity), each.text);
}

} // namespace
