#include "support/palette/PaletteEntries.h"
#include "support/palette/XPalette.h"
#include "tests/Testing.h"
#include "tests/engine/BitmapMaking.h"
#include "tests/engine/LogRecorder.h"

namespace {

std::vector<int> Numbers(const PALETTEENTRY& entry) {
    return {entry.peRed, entry.peGreen, entry.peBlue, entry.peFlags};
}

TEST(PaletteEntries, OfAPictureAreAlwaysAll) {
    // Three colours are announced, bytes are there for four and a half.
    BITMAPINFOHEADER header = MakeHeader(1, 1, 8);
    header.biClrUsed = 3;
    Bitmap bitmap(header, {0}, {1, 2, 3, 99, 4, 5, 6, 99, 7, 8, 9, 99, 10, 11, 12, 99, 13, 14});
    const PaletteEntries entries = EntriesOf(bitmap.dib);
    ASSERT_EQ(entries.size(), 256u);
    EXPECT_THAT(Numbers(entries[0]), ElementsAre(3, 2, 1, 0));
    EXPECT_THAT(Numbers(entries[3]), ElementsAre(12, 11, 10, 0));
    EXPECT_THAT(Numbers(entries[4]), ElementsAre(0, 14, 13, 0));
    EXPECT_THAT(Numbers(entries[5]), ElementsAre(0, 0, 0, 0));
    EXPECT_EQ(EntriesOf(Dib()).size(), 256u);
}

TEST(PaletteEntries, GreyRamp) {
    for (const auto& [count, size] : {std::pair{0, 256u}, {256, 256u}, {1, 1u}, {3, 3u}, {257, 0u}, {-1, 0u}})
        EXPECT_EQ(GreyRampEntries(count).size(), size) << count;
    EXPECT_THAT(Numbers(GreyRampEntries(0).back()), ElementsAre(255, 255, 255, 4));
    EXPECT_THAT(Numbers(GreyRampEntries(3)[2]), ElementsAre(2, 2, 2, 4));
}

TEST(PaletteEntries, MiddleLiesBetweenTheStaticColours) {
    PaletteEntries entries(256, PALETTEENTRY{1, 2, 3, 9});
    struct Case {
        int staticColours;
        std::size_t begin, count;
    };
    for (const Case& test : {Case{20, 10, 236}, {21, 10, 236}, {0, 0, 256}, {-1, 0, 256}, {254, 127, 2}}) {
        MarkMiddleEntries(entries, test.staticColours);
        for (std::size_t i = 0; i < entries.size(); ++i)
            ASSERT_THAT(Numbers(entries[i]), ElementsAre(1, 2, 3, i - test.begin < test.count ? 4 : 0))
                << test.staticColours << ", " << i;
    }
    EXPECT_TRUE(MiddleEntries(entries, 256).empty());
    EXPECT_TRUE(MiddleEntries(entries, INT32_MAX).empty());
}

TEST(PaletteEntries, GreyScale) {
    const auto scale = [](int maxGreys) {
        PaletteEntries entries(256, PALETTEENTRY{1, 2, 3, 9});
        EXPECT_TRUE(FillGreyScale(entries, 20, maxGreys));
        EXPECT_THAT(Numbers(entries[9]), ElementsAre(1, 2, 3, 0));
        EXPECT_THAT(Numbers(entries[246]), ElementsAre(1, 2, 3, 0));
        EXPECT_THAT(Numbers(entries[10]), ElementsAre(0, 0, 0, 4));
        return entries;
    };
    // 255 / 236 a step; the last is 235 of them: 253.9.
    EXPECT_THAT(Numbers(scale(1000)[245]), ElementsAre(253, 253, 253, 4));
    // 2.55 a step: 100 steps are 255 (254.99.. when summed up), 101 are 257.55.
    EXPECT_THAT(Numbers(scale(100)[109]), ElementsAre(252, 252, 252, 4));
    EXPECT_THAT(Numbers(scale(100)[111]), ElementsAre(1, 1, 1, 4)) << "past 255 only the low 8 bits are kept";
    PaletteEntries entries(4);
    for (const auto& [staticColours, maxGreys] : {std::pair{2, 0}, {2, -1}, {4, 9}, {5, 9}})
        EXPECT_FALSE(FillGreyScale(entries, staticColours, maxGreys)) << staticColours << ", " << maxGreys;
    EXPECT_THAT(Numbers(entries[1]), ElementsAre(0, 0, 0, 0));
}

TEST(Palette, IsAClassOfItsOwn) {
    const XPalette palette;
    EXPECT_EQ(RuntimeClass::Find("XPalette"), &palette.GetRuntimeClass());
    EXPECT_TRUE(palette.IsKindOf(Object::kRuntimeClass));
}

TEST(Palette, TellsWhenItCannotBeMade) {
    const LogRecorder log;
    XPalette palette;
    EXPECT_FALSE(palette.CreateGreyRamp(257));
    EXPECT_THAT(log.lines, ElementsAre(L"700/1 XPalette - could not create palette\n"));
    EXPECT_EQ(palette.SetSystemPalette(nullptr, false), 0u);
    palette.CreateGreyScalePalette(nullptr, 10);
    EXPECT_EQ(palette.Handle(), nullptr);
    EXPECT_EQ(log.lines.size(), 1u);
}

} // namespace
