#include "engine/Dib.h"
#include "platform/File.h"
#include "tests/TempFolder.h"
#include "tests/Testing.h"
#include "tests/engine/BitmapMaking.h"
#include "tests/engine/LogRecorder.h"

namespace {

using Bytes = std::vector<std::uint8_t>;

TEST(Dib, SizesThatTheHeaderAnnounces) {
    const auto expect = [](const char* name, BITMAPINFOHEADER header, DWORD used, DWORD image,
                           std::array<std::int64_t, 4> sizes) {
        header.biClrUsed = used;
        header.biSizeImage = image;
        const Dib dib(&header, sizeof header, nullptr, 0);
        EXPECT_THAT((std::array{std::int64_t{dib.GetColourCount()}, dib.GetHeaderSize(), dib.GetRowBytes(),
                                dib.GetBitsSize()}),
                    ElementsAreArray(sizes))
            << name;
    };
    // Colours, header size, row bytes, bits size.
    expect("8 bits", MakeHeader(5, 3, 8), 0, 0, {256, 40 + 1024, 8, 24});
    expect("4 bits", MakeHeader(9, 3, 4), 0, 0, {16, 40 + 64, 8, 24});
    expect("1 bit", MakeHeader(33, -2, 1), 0, 0, {2, 48, 8, 16});
    expect("24 bits, 3 wide", MakeHeader(3, 2, 24), 0, 0, {0, 40, 12, 24});
    expect("16 bits with masks", MakeHeader(3, 2, 16, BI_BITFIELDS), 0, 0, {0, 52, 8, 16});
    expect("colours used", MakeHeader(4, 1, 8), 3, 0, {3, 52, 4, 4});
    expect("stated image size", MakeHeader(4, 4, 24), 0, 7, {0, 40, 12, 7});
    EXPECT_EQ(Dib().GetColourCount() + Dib().GetHeaderSize() + Dib().GetRowBytes() + Dib().GetBitsSize(), 0);
    expect("FourCC", MakeHeader(16, 8, 16, MAKEFOURCC('Y', 'U', 'Y', '2')), 0, 0, {0, 40, 0, 0});
    expect("negative width", MakeHeader(-4, 4, 24), 0, 0, {0, 40, 0, 0});
    constexpr std::int64_t kGiB = 1 << 30;
    expect("extremes", MakeHeader(INT32_MAX, INT32_MIN, 65535), 0xFFFFFFFF, 0,
           {0xFFFFFFFF, 40 + 4 * std::int64_t{0xFFFFFFFF}, 2 * kGiB, 4 * kGiB * kGiB});
}

TEST(Dib, PixelsLieByOrientationAndSize) {
    const LogRecorder log;
    Bitmap bottomUp(MakeHeader(3, 2, 24), Bytes(24));
    EXPECT_EQ(bottomUp.dib.PixelAddress(0, 0), bottomUp.pixels.data() + 12);
    EXPECT_EQ(bottomUp.dib.PixelAddress(2, 1), bottomUp.pixels.data() + 6);
    Bitmap topDown(MakeHeader(3, -2, 24), Bytes(14)); // ends two bytes into the second row
    EXPECT_EQ(topDown.dib.PixelAddress(2, 0), topDown.pixels.data() + 6);
    Bitmap oneBit(MakeHeader(40, -2, 1), Bytes(16));
    EXPECT_EQ(oneBit.dib.PixelAddress(7, 1), oneBit.pixels.data() + 8 + 7);
    EXPECT_TRUE(log.lines.empty());

    for (const auto& [x, y] : {std::pair{3, 0}, {0, 2}, {-1, 0}, {0, -1}, {INT32_MAX, INT32_MIN}, {0, 1}})
        EXPECT_EQ(topDown.dib.PixelAddress(x, y), nullptr) << x << ", " << y;
    EXPECT_EQ(Dib().PixelAddress(0, 0), nullptr);
    EXPECT_EQ(log.lines, std::vector(7, std::wstring(L"700/1 Dib::PixelAddress invalid pixel\n")));
    // Two bits a pixel count as one byte; each call tells once.
    Bitmap twoBits(MakeHeader(2, 1, 2), {1, 2, 3, 4});
    EXPECT_EQ(twoBits.dib.PixelSize(), 1);
    EXPECT_EQ(twoBits.dib.PixelAddress(1, 0), twoBits.pixels.data() + 1);
    twoBits.dib.SetPixel(1, 0, 9);
    EXPECT_EQ(twoBits.dib.GetPixel(1, 0), 9u);
    EXPECT_EQ(std::ranges::count(log.lines, L"700/1 Dib::PixelSize: unexpected biBitCount\n"), 4);
}

TEST(Dib, PixelValues) {
    for (const auto& [bitCount, value, bytes] : {std::tuple{8, 0x12u, Bytes{0x12}},
                                                 {16, 0x1234u, Bytes{0x34, 0x12}},
                                                 {24, 0x123456u, Bytes{0x12, 0x34, 0x56}},
                                                 {32, 0x12345678u, Bytes{0x78, 0x56, 0x34, 0x12}}}) {
        Bitmap bitmap(MakeHeader(1, 1, bitCount), Bytes(bytes.size()));
        bitmap.dib.SetPixel(0, 0, value);
        bitmap.dib.SetPixel(1, 0, 1);
        EXPECT_EQ(bitmap.pixels, bytes) << bitCount;
        EXPECT_EQ(bitmap.dib.GetPixel(0, 0), value);
        EXPECT_EQ(bitmap.dib.GetPixel(1, 0), 0u);
    }
    Bitmap cut(MakeHeader(1, 1, 24), Bytes(1)); // two of three bytes do not exist
    cut.dib.SetPixel(0, 0, 0x123456);
    EXPECT_EQ(cut.dib.GetPixel(0, 0), 0x120000u);
}

TEST(Dib, AttachBorrows) {
    const Bitmap bitmap(MakeHeader(1, 1, 1), Bytes(4), Bytes(8 + 6));
    const BITMAPINFOHEADER* info = bitmap.dib.GetInfo();
    Dib dib(info, 54, nullptr, 0);
    EXPECT_EQ(dib.GetBits(), bitmap.block.data() + 48); // after the two colours
    EXPECT_EQ(dib.GetBitsExtent(), 6u);
    EXPECT_EQ(Dib(dib).GetBits(), dib.GetBits());

    EXPECT_TRUE(dib.Attach(info, 48, nullptr, 0)); // right after them the block ends
    EXPECT_EQ(dib.GetBits(), bitmap.block.data() + 48);
    EXPECT_EQ(dib.GetBitsExtent(), 0u);
    EXPECT_TRUE(dib.Attach(info, 47, nullptr, 0)); // a colour table cut short: no bits after it
    EXPECT_EQ(dib.GetBits(), nullptr);
    // Without a header, or with one cut short, the pixels are borrowed all the same.
    std::uint8_t pixel = 0;
    for (const auto& [header, bytes] : {std::pair{info, std::size_t{39}}, {nullptr, 0}}) {
        EXPECT_FALSE(dib.Attach(header, bytes, &pixel, 1));
        EXPECT_EQ(dib.GetInfo(), nullptr);
        EXPECT_EQ(dib.GetBits(), &pixel);
    }
}

TEST(Dib, CreateMakesOneUnpaddedBlock) {
    Dib dib;
    ASSERT_TRUE(dib.Create(3, 3, 8, true));
    EXPECT_EQ(dib.GetInfo()->biSizeImage, 9u);
    EXPECT_EQ(dib.GetBits(), reinterpret_cast<std::uint8_t*>(dib.GetInfo()) + 40 + 1024);
    EXPECT_EQ(dib.GetBitsExtent(), 9u);
    const auto* indices = reinterpret_cast<const WORD*>(dib.GetColourTable());
    EXPECT_EQ(indices[255], 255);
    EXPECT_EQ(indices[256], 0);
    EXPECT_TRUE(dib.Create(1, 1, 65535, false)); // the most that the header can hold
    EXPECT_TRUE(dib.Create(0, 3, 24, false));
    const int refused[][3] = {{-3, 3, 24},       {3, -3, 24}, {-3, -3, 24}, {INT32_MAX, INT32_MAX, 32},
                              {65536, 65536, 8}, {1, 1, -1},  {1, 1, 65536}};
    for (const auto& [width, height, bitCount] : refused) {
        EXPECT_FALSE(dib.Create(width, height, bitCount, false));
        EXPECT_EQ(dib.GetInfo(), nullptr);
    }
}

TEST(Dib, CreateFromHeaderAndDuplicate) {
    BITMAPINFOHEADER header = MakeHeader(2, 2, 8);
    header.biClrUsed = header.biClrImportant = 2;
    header.biSizeImage = 8;
    header.biSize = 60; // 20 bytes more than there are
    const Bytes pixels = {1, 2, 3, 4, 5};
    const auto copy = Dib::DuplicateFromHeader(&header, sizeof header, pixels.data(), pixels.size());
    EXPECT_EQ(copy->GetInfo()->biClrUsed + copy->GetInfo()->biClrImportant, 0u);
    EXPECT_EQ(copy->GetInfoExtent(), 60u);
    EXPECT_THAT(Bytes(copy->GetBits(), copy->GetBits() + copy->GetBitsExtent()),
                ElementsAre(1, 2, 3, 4, 5, 0, 0, 0));
    EXPECT_EQ(Dib::DuplicateFromHeader(nullptr, 0, pixels.data(), pixels.size()), nullptr);
    EXPECT_EQ(Dib::DuplicateFromHeader(&header, 39, pixels.data(), pixels.size()), nullptr);
}

TEST(Dib, CopyToIsDeepAndOfTheAnnouncedSizes) {
    Bitmap bitmap(MakeHeader(5, 3, 8), Bytes(20, 7), Bytes(40, 9)); // of 24 pixels and 1024 bytes of colours
    Dib copy;
    ASSERT_TRUE(bitmap.dib.CopyTo(copy));
    ASSERT_EQ(copy.GetInfoExtent(), 1064u);
    ASSERT_EQ(copy.GetBitsExtent(), 24u);
    std::ranges::fill(bitmap.pixels, std::uint8_t{0});
    Bytes expected(20, 7);
    expected.resize(24);
    EXPECT_EQ(Bytes(copy.GetBits(), copy.GetBits() + 24), expected);
    EXPECT_EQ(copy.GetColour(9).rgbBlue, 9);
    EXPECT_EQ(copy.GetColour(10).rgbBlue, 0);
    Dib taker;
    taker.TakeFrom(copy);
    EXPECT_EQ(taker.GetBitsExtent(), 24u);
    EXPECT_FALSE(copy.IsValid());
    ASSERT_TRUE(bitmap.dib.CopyTo(bitmap.dib)); // what was borrowed becomes its own
    EXPECT_NE(bitmap.dib.GetBits(), bitmap.pixels.data());
}

TEST(Dib, CopyToChangesNothingElse) {
    Dib target;
    ASSERT_TRUE(target.Create(1, 1, 8, true));
    BITMAPINFOHEADER* const old = target.GetInfo();
    BITMAPINFOHEADER longHeader = MakeHeader(1, 1, 24);
    longHeader.biSize = 0xFFFFFFFF;
    EXPECT_FALSE(Dib().CopyTo(target));
    for (const BITMAPINFOHEADER& header : {MakeHeader(INT32_MAX, INT32_MAX, 32), longHeader})
        EXPECT_FALSE(Bitmap(header, Bytes(4)).dib.CopyTo(target));
    EXPECT_EQ(target.GetInfo(), old);
    ASSERT_TRUE(Bitmap(MakeHeader(1, 1, 24), Bytes(4)).dib.CopyTo(target));
    EXPECT_EQ(old->biBitCount, 8) << "what the target owned is not freed";
    std::free(old);
}

TEST(Dib, ColourTables) {
    Dib dib;
    ASSERT_TRUE(dib.Create(1, 1, 8, false));
    const auto entry = [&dib](std::uint32_t i) {
        const RGBQUAD colour = dib.GetColour(i);
        return std::array<int, 3>{colour.rgbRed, colour.rgbGreen, colour.rgbBlue};
    };
    // Entry i of 3: red (20 * 3 + i * 20) / 2, green (100 * 3 - i * 100) / 2; blue 200 wraps at 300.
    dib.SetColourRamp(3, RGB(20, 100, 200), RGB(40, 0, 200));
    EXPECT_THAT(entry(0), ElementsAre(30, 150, 300 - 256));
    EXPECT_THAT(entry(2), ElementsAre(50, 50, 300 - 256));
    EXPECT_THAT(entry(3), Each(192));
    EXPECT_THAT(entry(255), Each(192));
    dib.SetColourRamp(1, RGB(20, 100, 7), RGB(40, 0, 0)); // no ramp, and no division by zero
    EXPECT_THAT(entry(1), Each(192));
    dib.SetColourCube();
    std::uint32_t next = 0;
    for (int green = 0; green < 8; ++green)
        for (int red = 0; red < 8; ++red)
            for (int blue = 0; blue < 4; ++blue)
                EXPECT_THAT(entry(next++), ElementsAre(255 * red / 7, 255 * green / 7, 85 * blue));
    EXPECT_FALSE(dib.HasGreyPalette());
    for (int i = 0; i < 256; ++i)
        std::memset(&dib.GetColourTable()[i], i, sizeof(RGBQUAD));
    EXPECT_TRUE(dib.HasGreyPalette());

    // Ten of 256 entries exist, and half of an eleventh: only whole ones are written.
    Bitmap cut(MakeHeader(1, 1, 8), Bytes(4), Bytes(42, 7));
    cut.dib.SetColourRamp(256, 0, 0);
    cut.dib.SetColourCube();
    EXPECT_EQ(cut.block[40 + 4 * 9], 85);
    EXPECT_THAT((Bytes{cut.block[80], cut.block[81]}), Each(7));
    EXPECT_EQ(cut.dib.GetColour(10).rgbGreen, 7);
    EXPECT_EQ(cut.dib.GetColour(10).rgbRed, 0);
    Bitmap masks(MakeHeader(1, 1, 16, BI_BITFIELDS), Bytes(4), Bytes(16, 7));
    EXPECT_EQ(masks.dib.GetMask(2), 0x07070707u);
    EXPECT_EQ(masks.dib.GetMask(3) + masks.dib.GetMask(-1), 0u) << "there are three";
}

TEST(Dib, DoubleFieldRepeatsRows) {
    // Rows of four bytes; of the first `bytes` each is the number that `valueOf` gives its row in memory.
    const auto rows = [](std::size_t bytes, auto valueOf) {
        Bytes pixels;
        for (std::size_t byte = 0; byte < bytes; ++byte)
            pixels.push_back(static_cast<std::uint8_t>(valueOf(byte / 4)));
        return pixels;
    };
    const auto expect = [&](std::int32_t height, int field, const Bytes& expected) {
        Bitmap bitmap(MakeHeader(1, height, 24), rows(expected.size(), std::identity()));
        bitmap.dib.DoubleField(field);
        EXPECT_EQ(bitmap.pixels, expected) << height << " rows, field " << field;
    };
    const auto even = [](std::size_t row) { return row - row % 2; };
    const auto odd = [](std::size_t row) { return row + 1 - row % 2; };
    for (const int field : {-1, 2})
        expect(-240, field, rows(960, std::identity()));
    expect(-239, 0, rows(4 * 239, std::identity()));
    expect(-241, 0, rows(4 * 241, even)); // the last row has no partner
    expect(-240, 1, rows(960, odd));
    expect(240, 0, rows(960, odd)); // bottom-up: memory row 239 is picture row 0
    // Of the last row half exists: copied from it, the other half is zeros.
    expect(-240, 0, rows(14, even));
    expect(-240, 1, {1, 1, 1, 1, 1, 1, 1, 1, 3, 3, 0, 0, 3, 3});
    expect(-240, 1, {1, 1, 1, 1, 1, 1, 1, 1, 0, 0, 0, 0});
}

std::string WrittenBy(Dib& dib, const TempFolder& folder) {
    const auto path = folder / "picture.bmp";
    return dib.WriteToPath(Wide(path)) ? ReadWhole(path) : std::string();
}

TEST(DibFile, WritesTheFormatByteForByte) {
    const TempFolder folder;
    BITMAPINFOHEADER header = MakeHeader(2, 1, 8);
    header.biClrUsed = 1;
    Bitmap bitmap(header, {5, 6, 7, 8}, {1, 2, 3, 4});
    using namespace std::string_view_literals;
    EXPECT_EQ(WrittenBy(bitmap.dib, folder),
              "BM\x3E\0\0\0\0\0\0\0\x3A\0\0\0"
              "\x28\0\0\0\2\0\0\0\1\0\0\0\1\0\x08\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\1\0\0\0\0\0\0\0"
              "\1\2\3\4\5\6\7\x08"sv);
}

TEST(DibFile, WhatDoesNotExistIsWrittenAsZeros) {
    const TempFolder folder;
    Bitmap bitmap(MakeHeader(2, 3000, 8), {7}, {9}); // 1 of 12000 pixels and 1 byte of colours
    std::string expected(1024 + 12000, '\0');
    expected[0] = 9;
    expected[1024] = 7;
    EXPECT_EQ(WrittenBy(bitmap.dib, folder).substr(14 + 40), expected);
}

TEST(DibFile, RefusesWhatCannotBeWritten) {
    const TempFolder folder;
    EXPECT_FALSE(Dib().WriteToPath(Wide(folder / "empty")));
    EXPECT_FALSE(Bitmap(MakeHeader(32768, 16384, 32), Bytes(4)).dib.WriteToPath(Wide(folder / "2 GiB")));
    EXPECT_FALSE(Bitmap(MakeHeader(1, 1, 24), Bytes(4)).dib.WriteToPath(Wide(folder / "missing" / "a")));
    // A device that is always full, where there is such a thing.
    EXPECT_FALSE(Bitmap(MakeHeader(2, 3000, 8), Bytes(4)).dib.WriteToPath(L"/dev/full"));
}

TEST(DibFile, ReadsHeadersAndSkipsPictures) {
    const LogRecorder log;
    const TempFolder folder;
    struct Case {
        const char* name;
        std::string content;
        bool loads;
        bool skips;
        std::string_view next = {}; ///< where the file stands then
    };
    Bitmap bitmap(MakeHeader(3, 2, 24), Bytes(24));
    for (const Case& c : {Case{"picture", WrittenBy(bitmap.dib, folder) + "next", true, true, "next"},
                          {"other type", "MB" + std::string(60, '\0'), false, false},
                          {"no information header", "BM" + std::string(12 + 39, '\0'), true, false},
                          {"header that calls itself empty", "BM0123456789ab" + std::string(40, '\0'), true,
                           true, std::string_view("\0\0\0\0", 4)}}) {
        std::ofstream(folder / "a", std::ios::binary) << c.content;
        File file;
        ASSERT_TRUE(file.Open(Wide(folder / "a"), File::Mode::Read));
        EXPECT_EQ(Dib().LoadHeader(file), c.loads) << c.name;
        ASSERT_TRUE(file.Open(Wide(folder / "a"), File::Mode::Read));
        EXPECT_EQ(Dib().SkipInFile(file), c.skips) << c.name;
        char next[4];
        if (c.skips) {
            EXPECT_EQ(std::string(next, file.Read(next, sizeof next)), c.next) << c.name;
        }
    }
    EXPECT_TRUE(log.lines.empty());
    File empty;
    EXPECT_FALSE(Dib().LoadHeader(empty));
    EXPECT_THAT(log.lines, ElementsAre(L"700/1 Dib::LoadHeader can't read file_header\n"));
}

} // namespace
