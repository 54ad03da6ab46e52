// Dibs made from the graphics system's bitmaps, and such bitmaps made from Dibs.
#include "engine/BitmapHeader.h"
#include "engine/Dib.h"
#include "tests/Testing.h"
#include "tests/engine/BitmapMaking.h"

namespace {

struct DeleteGdiObject {
    void operator()(HBITMAP bitmap) const { DeleteObject(bitmap); }
};
using BitmapHandle = std::unique_ptr<std::remove_pointer_t<HBITMAP>, DeleteGdiObject>;

struct Picture {
    int bitCount;
    int width;
};

class Gdi : public TestWithParam<Picture> {
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
        ASSERT_EQ(theirs.GetInfo()->biWidth, ours.GetInfo()->biWidth);
        ASSERT_EQ(theirs.GetInfo()->biHeight, ours.GetInfo()->biHeight);
        for (int y = 0; y < ours.GetInfo()->biHeight; ++y)
            for (int x = 0; x < ours.GetInfo()->biWidth; ++x)
                ASSERT_EQ(Colour(theirs, x, y), Colour(ours, x, y)) << x << ", " << y;
    }
    // The same colours on the device, and what that says they are.
    static void ExpectShown(const Dib& ours) {
        const HDC screen = GetDC(nullptr);
        const BitmapHandle device(ours.CreateDDB(screen));
        ASSERT_TRUE(device);
        Dib theirs;
        ASSERT_TRUE(theirs.CreateFromBitmap(device.get(), screen));
        EXPECT_EQ(theirs.GetBitCount(), GetDeviceCaps(screen, BITSPIXEL) * GetDeviceCaps(screen, PLANES));
        ReleaseDC(nullptr, screen);
        ExpectSameColours(ours, theirs);
    }

    static constexpr int kHeight = 5;
    const HDC m_dc;
};

TEST_P(Gdi, BitmapsOfTheSameDepth) {
    Dib ours;
    ASSERT_TRUE(ours.Create(GetParam().width, kHeight, GetParam().bitCount, false));
    Fill(ours);
    void* bits = nullptr;
    const BitmapHandle section(CreateDIBSection(m_dc, reinterpret_cast<const BITMAPINFO*>(ours.GetInfo()),
                                                DIB_RGB_COLORS, &bits, nullptr, 0));
    ASSERT_TRUE(section);
    std::memcpy(bits, ours.GetBits(), ours.GetBitsExtent());
    Dib theirs;
    ASSERT_TRUE(theirs.CreateFromBitmap(section.get(), m_dc));
    EXPECT_EQ(theirs.GetBitCount(), GetParam().bitCount);
    EXPECT_EQ(theirs.GetCompression(), DWORD{BI_RGB});
    ExpectSameColours(ours, theirs);
}

TEST_P(Gdi, BitmapsOfTheDevice) {
    Dib ours;
    ASSERT_TRUE(ours.Create(GetParam().width, kHeight, GetParam().bitCount, false));
    Fill(ours);
    ExpectShown(ours);
}

TEST_P(Gdi, BytesThatDoNotExistAreZeros) {
    const BITMAPINFOHEADER header = MakeHeader(GetParam().width, kHeight, GetParam().bitCount);
    const auto size = [](std::int64_t bytes) { return static_cast<std::size_t>(bytes); };
    // A row of the pixels, and half of the colours.
    const Bitmap cut(header, RandomBytes(size(RowBytes(header)), 9),
                     RandomBytes(size(HeaderSize(header) - 40) / 2, 9));
    ExpectShown(cut.dib);
}

// Rows of whole words at every depth, and rows that `Create` does not pad.
INSTANTIATE_TEST_SUITE_P(Pictures, Gdi,
                         Values(Picture{1, 32}, Picture{4, 32}, Picture{8, 32}, Picture{16, 32},
                                Picture{24, 32}, Picture{32, 32}, Picture{1, 3}, Picture{4, 5}, Picture{8, 3},
                                Picture{16, 3}, Picture{24, 3}));

TEST(Gdi, PicturesOfNoPossibleSizeAreRefused) {
    const Bitmap huge(MakeHeader(65536, 65536, 32), RandomBytes(4, 9));
    EXPECT_EQ(huge.dib.CreateDDB(GetDC(nullptr)), nullptr);
}

} // namespace
