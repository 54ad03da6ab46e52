#include "engine/Luminance.h"
#include "tests/Testing.h"
#include "tests/engine/BitmapMaking.h"

namespace {

using Samples = std::vector<std::uint8_t>;

constexpr DWORD kYuy2 = MAKEFOURCC('Y', 'U', 'Y', '2');
constexpr DWORD kUyvy = MAKEFOURCC('U', 'Y', 'V', 'Y');
constexpr DWORD kI420 = MAKEFOURCC('I', '4', '2', '0');
constexpr DWORD kDvsd = MAKEFOURCC('d', 'v', 's', 'd');

Samples Masks(std::uint32_t red, std::uint32_t green, std::uint32_t blue) {
    Samples bytes;
    for (const std::uint32_t mask : {red, green, blue})
        for (int shift = 0; shift < 32; shift += 8)
            bytes.push_back(static_cast<std::uint8_t>(mask >> shift));
    return bytes;
}

Samples Read(const Bitmap& bitmap, const LuminanceGrid& grid) {
    Samples samples(static_cast<std::size_t>(grid.width * grid.height));
    ReadLuminance(bitmap.dib, *LayoutOf(bitmap.dib), grid, samples.data());
    return samples;
}

TEST(Luminance, TheFormatIsTheFirstThatMatches) {
    const auto layoutOf = [](DWORD compression, int bitCount, const Samples& masks = {}) {
        return LayoutOf(Bitmap(MakeHeader(8, 8, bitCount, compression), {}, masks).dib);
    };
    EXPECT_EQ(layoutOf(kYuy2, 24), PixelLayout::Yuy2); // before the pixel size
    EXPECT_EQ(layoutOf(kUyvy, 16), PixelLayout::Uyvy);
    for (const DWORD planar : {kI420, MAKEFOURCC('Y', 'V', '1', '2'), MAKEFOURCC('I', 'Y', 'U', 'V')})
        EXPECT_EQ(layoutOf(planar, 12), PixelLayout::Planar);
    EXPECT_EQ(layoutOf(MAKEFOURCC('y', 'u', 'y', '2'), 16), std::nullopt);
    EXPECT_EQ(layoutOf(kDvsd, 24), PixelLayout::Rgb24); // any other FourCC goes by its pixel size
    EXPECT_EQ(layoutOf(BI_RGB, 32), PixelLayout::Rgb32);
    for (const int bitCount : {1, 2, 4, 8})
        EXPECT_EQ(layoutOf(BI_RGB, bitCount), PixelLayout::Palette8);
    EXPECT_EQ(layoutOf(BI_RGB, 16), PixelLayout::Rgb565);
    EXPECT_EQ(layoutOf(BI_BITFIELDS, 16, Masks(0xF800, 0x07E0, 0x001F)), PixelLayout::Rgb565);
    EXPECT_EQ(layoutOf(BI_BITFIELDS, 16, Masks(0x7C00, 0x03E0, 0x001F)), PixelLayout::Rgb555);
    EXPECT_EQ(layoutOf(BI_BITFIELDS, 16, Masks(0x001F, 0x07E0, 0xF800)), std::nullopt);
    EXPECT_EQ(layoutOf(BI_BITFIELDS, 16), std::nullopt); // no masks in the block
    Samples cut = Masks(0x7C00, 0x03E0, 0x001F);         // three zeros fewer
    cut.resize(9);
    EXPECT_EQ(layoutOf(BI_BITFIELDS, 16, cut), PixelLayout::Rgb555);
    EXPECT_EQ(layoutOf(kDvsd, 16), std::nullopt);
    EXPECT_EQ(LayoutOf(Dib()), std::nullopt);
}

TEST(Luminance, PackedIsOneRun) {
    // Luma 10 in the left block, 250 in the right one, chroma 77.
    Samples picture;
    for (int pixel = 0; pixel < 16 * 8; ++pixel)
        picture.insert(picture.end(), {static_cast<std::uint8_t>(pixel % 16 < 8 ? 10 : 250), 77});
    EXPECT_THAT(Read({MakeHeader(16, 8, 16, kYuy2), picture}, {2, 1, 8}), ElementsAre(10, 250));
    EXPECT_THAT(Read({MakeHeader(16, 8, 16, kUyvy), picture}, {2, 1, 8}), ElementsAre(77, 77));
    // 20 pixels wide, only the last row lit: the 128 pixels of the run end before it.
    Samples lastRow(20 * 7 * 2, 0);
    lastRow.insert(lastRow.end(), 20 * 2, 255);
    EXPECT_THAT(Read({MakeHeader(20, 8, 16, kYuy2), lastRow}, {2, 1, 8}), ElementsAre(0, 0));
}

TEST(Luminance, PlanarSwapsWidthAndHeight) {
    // 16 x 8: a column of two blocks, the second one chroma (128), of which half is beyond the data.
    Samples picture;
    for (int pixel = 0; pixel < 16 * 8; ++pixel)
        picture.push_back(pixel % 16 < 8 ? 100 : 50);
    picture.insert(picture.end(), 64, 128);
    EXPECT_THAT(Read({MakeHeader(16, 8, 12, kI420), picture}, {2, 1, 8}), ElementsAre(100, 64));
}

// Rows of five pixels, seven bytes apart. The fifth column and the third row fill no block.
TEST(Luminance, RowsAreReadWhereTheyLie) {
    const Samples bytes = {10, 20, 30, 40, 99, 1, 1, 12, 22, 34, 40, 99, 1, 1, 99, 99, 99, 99, 99};
    const auto read = [&](PixelLayout layout, std::size_t top, std::ptrdiff_t stride, int width, int height) {
        Samples samples(2, 77);
        ReadLuminance({layout, &bytes[top], stride, width, height}, {2, 1, 2}, samples.data());
        return samples;
    };
    EXPECT_THAT(read(PixelLayout::Planar, 0, 7, 5, 3), ElementsAre(16, 36));
    EXPECT_THAT(read(PixelLayout::Planar, 7, -7, 5, 2), ElementsAre(16, 36));
    EXPECT_THAT(read(PixelLayout::Planar, 0, 7, 2, 3), ElementsAre(16, 0)) << "only what the picture has";
    EXPECT_THAT(read(PixelLayout::Planar, 14, 7, 5, 1), ElementsAre(49, 49)) << "half a block is missing";
    EXPECT_THAT(read(PixelLayout::Yuy2, 0, 7, 2, 2), ElementsAre((10 + 30 + 12 + 34) / 4, 0));
    Samples halved(2);
    ReadLuminance({PixelLayout::Planar, bytes.data(), 7, 5, 3, 0, 1}, {2, 1, 4}, halved.data());
    EXPECT_THAT(halved, ElementsAre(16, 36)) << "a block of 4 is one of 2 in a picture of half the size";
}

TEST(Luminance, RgbFollowsTheOrientation) {
    // 8 x 16: blue 1, green 2, red 6 in the first half of the memory, 255 in the second.
    Samples picture;
    for (int pixel = 0; pixel < 8 * 8; ++pixel)
        picture.insert(picture.end(), {1, 2, 6});
    picture.insert(picture.end(), 8 * 8 * 3, 255);
    EXPECT_THAT(Read({MakeHeader(8, -16, 24), picture}, {1, 2, 8}), ElementsAre(3, 255));
    EXPECT_THAT(Read({MakeHeader(8, 16, 24), picture}, {1, 2, 8}), ElementsAre(255, 3));
    // A grid larger than the picture: no such pixels.
    EXPECT_THAT(Read({MakeHeader(8, -8, 24), picture}, {2, 2, 8}), ElementsAre(3, 0, 0, 0));
}

TEST(Luminance, FourBytePixelsAreReadInThreeByteSteps) {
    // 16 x 8: the second block begins at byte 32; its rows of 24 bytes lie 64 - 8 apart.
    Samples picture(16 * 8 * 4, 0);
    for (std::ptrdiff_t row = 0; row < 8; ++row)
        std::fill_n(picture.begin() + 32 + 56 * row, 24, std::uint8_t{90});
    EXPECT_THAT(Read({MakeHeader(16, -8, 32), picture}, {2, 1, 8}), ElementsAre(0, 90));
    // As wide as one block: the first 192 bytes in a run.
    Samples narrow(192, 30);
    narrow.insert(narrow.end(), 64, 255);
    EXPECT_THAT(Read({MakeHeader(8, -8, 32), narrow}, {1, 1, 8}), ElementsAre(30));
}

TEST(Luminance, TwoBytePixelsSkipRows) {
    // 16 x 8, white (748 a pixel). Top-down the rows of a block lie 48 bytes apart, and 6 and 5 of 8 exist;
    // bottom-up they lie 80 apart, downwards, and 3 and 4 exist.
    const Samples white(16 * 8 * 2, 255);
    EXPECT_THAT(Read({MakeHeader(16, -8, 16), white}, {2, 1, 8}),
                ElementsAre(748 * 6 * 8 / 192, 748 * 5 * 8 / 192));
    EXPECT_THAT(Read({MakeHeader(16, 8, 16), white}, {2, 1, 8}),
                ElementsAre(748 * 3 * 8 / 192, 748 * 4 * 8 / 192));
}

TEST(Luminance, PaletteEndsAndMissingPixels) {
    // Colours with means 20, 50 and (60 + 90) / 3, of which one is announced and two and a half exist, and
    // then none. Missing pixels are index 0.
    BITMAPINFOHEADER header = MakeHeader(32, -8, 8);
    header.biClrUsed = 1;
    Samples indices;
    for (int pixel = 0; pixel < 32 * 4; ++pixel)
        indices.push_back(static_cast<std::uint8_t>(pixel % 32 / 8));
    EXPECT_THAT(Read({header, indices, {10, 20, 30, 0, 40, 50, 60, 0, 60, 90}}, {5, 1, 8}),
                ElementsAre(20, (50 + 20) / 2, (50 + 20) / 2, (0 + 20) / 2, 20));
}

// The fast and the checked ways must agree: data cut anywhere reads as the same data with zeros after it.
TEST(Luminance, CutDataReadsAsZeros) {
    const Samples colours = RandomBytes(1024, 7);
    for (const auto& [compression, bitCount] : {std::pair{kYuy2, 16},
                                                {kUyvy, 16},
                                                {kI420, 12},
                                                {DWORD{BI_RGB}, 24},
                                                {DWORD{BI_RGB}, 32},
                                                {DWORD{BI_RGB}, 8},
                                                {DWORD{BI_RGB}, 16}})
        for (const int height : {35, -35})
            for (const int blockSize : {8, 5, 1, 16})
                for (const std::size_t bytes : {0, 1, 700, 1999}) {
                    const BITMAPINFOHEADER header = MakeHeader(33, height, bitCount, compression);
                    const LuminanceGrid grid{33 / blockSize, 35 / blockSize, blockSize};
                    Samples data = RandomBytes(bytes, static_cast<unsigned>(bytes));
                    const Samples cut = Read({header, data, colours}, grid);
                    data.resize(100'000);
                    EXPECT_EQ(cut, Read({header, data, colours}, grid))
                        << bitCount << " bits, " << height << " rows, " << bytes << " bytes";
                }
}

TEST(Luminance, HeadersThatMakeNoSenseReadAsNothing) {
    for (const auto& [width, height] :
         {std::pair{0, 0}, {-8, 8}, {INT32_MAX, INT32_MAX}, {INT32_MIN, INT32_MIN}, {INT32_MAX, INT32_MIN}})
        for (const int bitCount : {8, 16, 24, 32})
            EXPECT_THAT(Read({MakeHeader(width, height, bitCount), {}}, {2, 2, 8}), ElementsAre(0, 0, 0, 0))
                << width << " x " << height;
    // Block sizes and grids that cannot be read leave the samples alone.
    const Bitmap bitmap(MakeHeader(16, 16, 24), Samples(16 * 16 * 3, 9));
    std::uint8_t sample = 7;
    for (const LuminanceGrid& grid : {LuminanceGrid{1, 1, 0}, {1, 1, INT32_MAX}, {0, 1, 8}, {1, -1, 8}})
        ReadLuminance(bitmap.dib, PixelLayout::Rgb24, grid, &sample);
    EXPECT_EQ(sample, 7);
}

} // namespace
