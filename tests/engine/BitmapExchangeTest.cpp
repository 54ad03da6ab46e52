// Bitmap files from and for other programs: the pixels are the same on both sides.
#include "engine/Dib.h"
#include "platform/Archive.h"
#include "platform/File.h"
#include "tests/TempFolder.h"
#include "tests/Testing.h"
#include "tests/engine/BitmapMaking.h"

#include <bit>

namespace {

// Three bytes a pixel, red first, the top row first.
struct Picture {
    int width;
    int height;
    std::string rgb;

    [[nodiscard]] std::string Ppm() const {
        return "P6\n" + std::to_string(width) + " " + std::to_string(height) + "\n255\n" + rgb;
    }
    friend bool operator==(const Picture&, const Picture&) = default;
};

// All pixels are of `colours` many; black and white are the first two.
Picture MakePicture(int width, int height, unsigned colours) {
    std::mt19937 random(colours);
    std::vector<std::array<char, 3>> table = {{0, 0, 0}, {'\xFF', '\xFF', '\xFF'}};
    while (table.size() < colours)
        table.push_back(
            {static_cast<char>(random()), static_cast<char>(random()), static_cast<char>(random())});
    Picture picture{width, height, ""};
    for (int i = 0; i < width * height; ++i)
        picture.rgb.append(table[random() % colours].data(), 3);
    return picture;
}

std::uint8_t Scaled(std::uint32_t value, std::uint32_t mask) {
    const int bits = std::popcount(mask);
    return static_cast<std::uint8_t>((value & mask) >> std::countr_zero(mask) << (8 - bits));
}

// What a picture of a loaded file shows. Components of less than 8 bits have low bits of 0.
Picture Seen(const Dib& dib) {
    Picture seen{static_cast<int>(dib.GetInfo()->biWidth),
                 std::abs(static_cast<int>(dib.GetInfo()->biHeight)), ""};
    const int bits = dib.GetBitCount();
    for (int y = 0; y < seen.height; ++y) {
        for (int x = 0; x < seen.width; ++x) {
            std::array<std::uint32_t, 3> rgb{};
            if (bits <= 8) { // pixels of less than a byte are addressed by whole bytes
                const std::uint32_t byte = dib.GetPixel(x * bits / 8, y);
                const int shift = 8 - bits - x * bits % 8;
                const RGBQUAD colour = dib.GetColour(byte >> shift & ((1u << bits) - 1));
                rgb = {colour.rgbRed, colour.rgbGreen, colour.rgbBlue};
            } else if (bits == 24) {
                const std::uint32_t pixel = dib.GetPixel(x, y);
                rgb = {pixel & 0xFF, pixel >> 8 & 0xFF, pixel >> 16};
            } else {
                const bool masks = dib.GetCompression() == BI_BITFIELDS;
                const std::array<std::uint32_t, 3> usual =
                    bits == 16 ? std::array{0x7C00u, 0x3E0u, 0x1Fu} : std::array{0xFF0000u, 0xFF00u, 0xFFu};
                for (int i = 0; i < 3; ++i)
                    rgb[static_cast<std::size_t>(i)] = Scaled(
                        dib.GetPixel(x, y), masks ? dib.GetMask(i) : usual[static_cast<std::size_t>(i)]);
            }
            for (const std::uint32_t component : rgb)
                seen.rgb += static_cast<char>(component);
        }
    }
    return seen;
}

// The picture in words of 5, 5 (or 6) and 5 bits, and what is left of it then.
std::string Reduce(Picture& picture, int greenBits) {
    std::string words;
    for (std::size_t i = 0; i < picture.rgb.size(); i += 3) {
        std::uint32_t word = 0;
        for (std::size_t c = 0; c < 3; ++c) {
            const int bits = c == 1 ? greenBits : 5;
            const std::uint32_t value = static_cast<std::uint8_t>(picture.rgb[i + c]) >> (8 - bits);
            word = word << bits | value;
            picture.rgb[i + c] = static_cast<char>(value << (8 - bits));
        }
        words += {static_cast<char>(word), static_cast<char>(word >> 8)};
    }
    return words;
}

class BitmapExchange : public Test {
  protected:
    void Make(const Picture& truth, const std::string& command) {
        std::ofstream(m_folder / "truth.ppm", std::ios::binary) << truth.Ppm();
        Shell(command);
    }
    void Shell(const std::string& command) {
        ASSERT_EQ(std::system(("cd '" + (m_folder / "").string() + "' && " + command).c_str()), 0) << command;
    }
    // True when the file is a bitmap that was loaded whole.
    bool Load(const char* name, Dib& dib) {
        File file;
        EXPECT_TRUE(file.Open(Wide(m_folder / name), File::Mode::Read)) << name;
        if (!dib.LoadHeader(file))
            return false;
        Archive archive(file, Archive::Mode::Load);
        try {
            dib.LoadFromArchive(archive);
        } catch (const ArchiveException&) {
            return false;
        }
        return true;
    }

    TempFolder m_folder;
};

TEST_F(BitmapExchange, IsLoadedAndSkipped) {
    struct Case {
        const char* name;
        int bitCount; // 5 and 6: 16, of which that many are green's
        unsigned colours;
        const char* command;
    };
    const Case cases[] = {
        {"1 bit", 1, 2, IMAGEMAGICK " truth.ppm -type bilevel BMP3:file.bmp"},
        {"4 bits", 4, 9, IMAGEMAGICK " truth.ppm -type palette -compress none BMP3:file.bmp"},
        {"8 bits", 8, 100, IMAGEMAGICK " truth.ppm -type palette -compress none BMP3:file.bmp"},
        {"24 bits", 24, 5000, IMAGEMAGICK " truth.ppm -type truecolor BMP3:file.bmp"},
        {"16 bits", 5, 5000,
         "ffmpeg -v error -f rawvideo -pix_fmt rgb555le -s $(cat size) -i words file.bmp"},
        {"16 bits, masks", 6, 5000,
         "ffmpeg -v error -f rawvideo -pix_fmt rgb565le -s $(cat size) -i words file.bmp"},
        {"32 bits", 32, 5000, "ffmpeg -v error -i truth.ppm -pix_fmt bgra file.bmp"},
    };
    for (const Case& test : cases) {
        for (const auto& [width, height] : {std::pair{32, 9}, {37, 5}}) {
            SCOPED_TRACE(std::string(test.name) + ", " + std::to_string(width));
            Picture truth = MakePicture(width, height, test.colours);
            const bool isWords = test.bitCount == 5 || test.bitCount == 6;
            if (isWords) {
                std::ofstream(m_folder / "words", std::ios::binary) << Reduce(truth, test.bitCount);
                std::ofstream(m_folder / "size") << width << 'x' << height;
            }
            ASSERT_NO_FATAL_FAILURE(Make(truth, std::string("rm -f file.bmp && ") + test.command));
            Dib dib;
            ASSERT_TRUE(Load("file.bmp", dib));
            ASSERT_EQ(dib.GetBitCount(), isWords ? 16 : test.bitCount);
            EXPECT_EQ(Seen(dib), truth);

            Shell("cat file.bmp file.bmp > two.bmp");
            File two;
            ASSERT_TRUE(two.Open(Wide(m_folder / "two.bmp"), File::Mode::Read));
            EXPECT_TRUE(dib.SkipInFile(two));
            EXPECT_TRUE(dib.LoadHeader(two)) << "it stands at the second one";
        }
    }
}

TEST_F(BitmapExchange, LongerHeadersLeadToTheirPixels) {
    ASSERT_NO_FATAL_FAILURE(Make(MakePicture(37, 5, 8), IMAGEMAGICK " truth.ppm -type palette BMP:file.bmp"));
    Dib dib;
    ASSERT_TRUE(Load("file.bmp", dib));
    EXPECT_GT(dib.GetInfo()->biSize, 40u);
    const std::string pixels(dib.GetBits(), dib.GetBits() + dib.GetBitsExtent());
    EXPECT_EQ(pixels.size(), 5u * 40 / 2);
    EXPECT_TRUE(ReadWhole(m_folder / "file.bmp").ends_with(pixels));
}

TEST_F(BitmapExchange, MasksThatAreNotThereAreRefused) {
    // Within a longer header, and nowhere.
    for (const char* command : {IMAGEMAGICK " truth.ppm -alpha set BMP:file.bmp", IMAGEMAGICK
                                " truth.ppm -type truecolor -define bmp:subtype=RGB565 BMP3:file.bmp"}) {
        ASSERT_NO_FATAL_FAILURE(Make(MakePicture(37, 5, 8), command));
        Dib dib;
        EXPECT_FALSE(Load("file.bmp", dib)) << command;
        EXPECT_FALSE(dib.IsValid());
    }
}

TEST_F(BitmapExchange, IsReadByOthers) {
    for (const int bitCount : {1, 4, 8, 16, 24, 32}) {
        for (const std::int32_t height : {6, -6}) {
            SCOPED_TRACE(std::to_string(bitCount) + " bits, " + std::to_string(height) + " rows");
            // A bitmap that was loaded from pieces of memory: rows of whole words, random colours and pixels.
            BITMAPINFOHEADER header =
                MakeHeader(32, height, bitCount, bitCount == 16 ? BI_BITFIELDS : BI_RGB);
            header.biSizeImage = static_cast<DWORD>(4 * bitCount * 6);
            std::vector<std::uint8_t> table(bitCount <= 8 ? std::size_t{4} << bitCount : 0);
            if (bitCount == 16)
                table = {0x00, 0xF8, 0, 0, 0xE0, 0x07, 0, 0, 0x1F, 0x00, 0, 0};
            else
                table = RandomBytes(table.size(), 5);
            Bitmap bitmap(header, RandomBytes(header.biSizeImage, 6), table);
            ASSERT_TRUE(bitmap.dib.WriteToPath(Wide(m_folder / "ours.bmp")));
            ASSERT_NO_FATAL_FAILURE(Shell(IMAGEMAGICK " ours.bmp -alpha off -depth 8 PPM:theirs.ppm"));
            const std::string ppm = ReadWhole(m_folder / "theirs.ppm");
            const Picture ours = Seen(bitmap.dib);
            ASSERT_EQ(ppm.size(), ours.Ppm().size());
            Picture theirs{32, 6, ppm.substr(ppm.size() - ours.rgb.size())};
            if (bitCount == 16) { // scaled up by them: the bits that were there have to come back
                for (std::size_t i = 0; i < theirs.rgb.size(); ++i)
                    theirs.rgb[i] = static_cast<char>(theirs.rgb[i] & (i % 3 == 1 ? 0xFC : 0xF8));
            }
            EXPECT_EQ(theirs.rgb, ours.rgb);
        }
    }
}

} // namespace
