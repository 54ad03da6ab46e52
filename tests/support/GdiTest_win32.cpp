// Bitmaps of the graphics system, to and fro.
#include "engine/BitmapHeader.h"
#include "engine/Dib.h"
#include "tests/engine/BitmapMaking.h"

#include <gtest/gtest.h>

#include <memory>
#include <type_traits>

namespace scenedetect {
namespace {

using testing_support::MakeHeader;
using testing_support::RandomBytes;

struct DeleteGdiObject {
    void operator()(HBITMAP bitmap) const { DeleteObject(bitmap); }
};
using BitmapHandle = std::unique_ptr<std::remove_pointer_t<HBITMAP>, DeleteGdiObject>;

class Gdi : public testing::TestWithParam<int> {
  protected:
    Gdi() : m_dc(CreateCompatibleDC(nullptr)) {}
    ~Gdi() override { DeleteDC(m_dc); }

    // Random pixels and colours.
    static void Fill(Dib& dib) {
        const auto pixels = RandomBytes(dib.GetBitsExtent(), 7);
        std::copy(pixels.begin(), pixels.end(), dib.GetBits());
        const auto colours = RandomBytes(4 * std::size_t{dib.GetColourCount()}, 8);
        std::memcpy(static_cast<void*>(dib.GetColourTable()), colours.data(), colours.size());
        for (DWORD i = 0; i < dib.GetColourCount(); ++i)
            dib.GetColourTable()[i].rgbReserved = 0;
    }
    static COLORREF Colour(const Dib& dib, int x, int y) {
        const int bits = dib.GetBitCount();
        const std::uint32_t pixel = dib.GetPixel(bits < 8 ? x * bits / 8 : x, y);
        if (bits <= 8) {
            const int shift = 8 - bits - x * bits % 8;
            const RGBQUAD colour = dib.GetColour(pixel >> shift & ((1u << bits) - 1));
            return RGB(colour.rgbRed, colour.rgbGreen, colour.rgbBlue);
        }
        if (bits == 16) { // 5 bits each, scaled up as the system does
            const auto scaled = [pixel](int at) { return (pixel >> at & 31) << 3 | (pixel >> at & 31) >> 2; };
            return RGB(scaled(10), scaled(5), scaled(0));
        }
        return bits == 24 ? pixel : RGB(pixel >> 16 & 255, pixel >> 8 & 255, pixel & 255);
    }
    static void ExpectSameColours(const Dib& ours, const Dib& theirs) {
        ASSERT_EQ(theirs.GetInfo()->biWidth, kWidth);
        ASSERT_EQ(theirs.GetInfo()->biHeight, kHeight);
        for (int y = 0; y < kHeight; ++y)
            for (int x = 0; x < kWidth; ++x)
                ASSERT_EQ(Colour(theirs, x, y), Colour(ours, x, y)) << x << ", " << y;
    }

    static constexpr int kWidth = 32; // rows of whole words at every depth
    static constexpr int kHeight = 5;
    const HDC m_dc;
};

TEST_P(Gdi, BitmapsOfTheSameDepth) {
    Dib ours;
    ASSERT_TRUE(ours.Create(kWidth, kHeight, GetParam(), false));
    Fill(ours);
    void* bits = nullptr;
    const BitmapHandle section(CreateDIBSection(m_dc, reinterpret_cast<const BITMAPINFO*>(ours.GetInfo()),
                                                DIB_RGB_COLORS, &bits, nullptr, 0));
    ASSERT_TRUE(section);
    std::memcpy(bits, ours.GetBits(), ours.GetBitsExtent());
    Dib theirs;
    ASSERT_TRUE(theirs.CreateFromBitmap(section.get(), m_dc));
    EXPECT_EQ(theirs.GetBitCount(), GetParam());
    EXPECT_EQ(theirs.GetCompression(), DWORD{BI_RGB});
    ExpectSameColours(ours, theirs);
}

TEST_P(Gdi, BitmapsOfTheDevice) {
    Dib ours;
    ASSERT_TRUE(ours.Create(kWidth, kHeight, GetParam(), false));
    Fill(ours);
    const HDC screen = GetDC(nullptr);
    const BitmapHandle device(ours.CreateDDB(screen));
    ASSERT_TRUE(device);
    Dib theirs;
    ASSERT_TRUE(theirs.CreateFromBitmap(device.get(), screen));
    EXPECT_EQ(theirs.GetBitCount(), GetDeviceCaps(screen, BITSPIXEL) * GetDeviceCaps(screen, PLANES));
    ReleaseDC(nullptr, screen);
    ExpectSameColours(ours, theirs);
}

INSTANTIATE_TEST_SUITE_P(Depths, Gdi, testing::Values(1, 4, 8, 16, 24, 32));

TEST(Gdi, PicturesThatAreNotAllThereAreRefused) {
    testing_support::Bitmap cut(MakeHeader(4, 4, 24), RandomBytes(47, 9));
    EXPECT_EQ(cut.dib.CreateDDB(GetDC(nullptr)), nullptr);
    testing_support::Bitmap colourless(MakeHeader(4, 4, 8), RandomBytes(16, 9), RandomBytes(1023, 9));
    EXPECT_EQ(colourless.dib.CreateDDB(GetDC(nullptr)), nullptr);
}

} // namespace
} // namespace scenedetect
