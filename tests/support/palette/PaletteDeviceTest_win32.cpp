// Palettes on a display: one that has a palette when the environment says so, else one of true colour.
#include "support/palette/XPalette.h"
#include "tests/Testing.h"
#include "tests/engine/BitmapMaking.h"
#include "tests/engine/LogRecorder.h"

namespace {

std::vector<PALETTEENTRY> EntriesIn(const XPalette& palette) {
    std::vector<PALETTEENTRY> entries(GetPaletteEntries(palette.Handle(), 0, 0, nullptr));
    GetPaletteEntries(palette.Handle(), 0, static_cast<UINT>(entries.size()), entries.data());
    return entries;
}

class PaletteDevice : public Test {
  protected:
    PaletteDevice() : m_dc(GetDC(nullptr)) {}
    ~PaletteDevice() override { ReleaseDC(nullptr, m_dc); }

    [[nodiscard]] int Caps(int index) const { return GetDeviceCaps(m_dc, index); }

    const HDC m_dc;
    const LogRecorder m_log;
    XPalette m_palette;
};

TEST_F(PaletteDevice, IsTheOneThatWasAskedFor) {
    const char* wanted = std::getenv("SCENEDETECT_PALETTE_DISPLAY");
    EXPECT_EQ((Caps(RASTERCAPS) & RC_PALETTE) != 0, wanted != nullptr);
}

TEST_F(PaletteDevice, MakesPalettes) {
    ASSERT_TRUE(m_palette.CreateGreyRamp(3));
    std::vector<PALETTEENTRY> entries = EntriesIn(m_palette);
    ASSERT_EQ(entries.size(), 3u);
    EXPECT_EQ(entries[2].peRed, 2);
    EXPECT_EQ(entries[2].peFlags, PC_NOCOLLAPSE);

    Bitmap picture(MakeHeader(1, 1, 1), {0}, {1, 2, 3, 0, 4, 5, 6, 0});
    ASSERT_TRUE(m_palette.CreateFromDib(picture.dib));
    entries = EntriesIn(m_palette);
    ASSERT_EQ(entries.size(), 256u);
    EXPECT_EQ(entries[1].peRed, 6);
    EXPECT_EQ(entries[1].peFlags, 0);
    EXPECT_FALSE(m_palette.CreateGreyRamp(300));
    EXPECT_EQ(m_palette.Handle(), nullptr);
    EXPECT_EQ(m_log.lines.size(), 1u);
}

TEST_F(PaletteDevice, TakesTheColoursOfTheDisplayOver) {
    ASSERT_TRUE(m_palette.CreateGreyRamp(0));
    const std::uint32_t realized = m_palette.SetSystemPalette(m_dc, false);
    EXPECT_TRUE(m_log.lines.empty());
    if ((Caps(RASTERCAPS) & RC_PALETTE) == 0) {
        EXPECT_EQ(realized, 0u);
        EXPECT_EQ(EntriesIn(m_palette)[128].peGreen, 128) << "left as it was";
        return;
    }
    EXPECT_GT(realized, 0u);
    const auto size = static_cast<std::size_t>(Caps(SIZEPALETTE));
    const auto half = static_cast<std::size_t>(std::max(Caps(NUMCOLORS), 0) / 2);
    std::vector<PALETTEENTRY> system(size);
    GetSystemPaletteEntries(m_dc, 0, static_cast<UINT>(size), system.data());
    const auto check = [&](auto colourOf) {
        const std::vector<PALETTEENTRY> entries = EntriesIn(m_palette);
        ASSERT_EQ(entries.size(), size);
        for (std::size_t i = 0; i < size; ++i) {
            const bool isMiddle = i >= half && i < size - half;
            EXPECT_EQ(entries[i].peFlags, isMiddle ? PC_NOCOLLAPSE : 0) << i;
            EXPECT_EQ(entries[i].peRed, isMiddle ? colourOf(i) : system[i].peRed) << i;
        }
    };
    check([&](std::size_t i) { return system[i].peRed; });
    // Steps of two, so that the scale is run through twice.
    m_palette.CreateGreyScalePalette(m_dc, 127);
    std::vector<BYTE> greys(size);
    double level = 0.0;
    for (std::size_t i = half; i < size - half; ++i, level += 255.0 / 127.0)
        greys[i] = static_cast<BYTE>(static_cast<int>(level));
    check([&](std::size_t i) { return greys[i]; });
    EXPECT_GT(m_palette.SetSystemPalette(m_dc, true), 0u);
}

} // namespace
