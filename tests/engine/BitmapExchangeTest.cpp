// Bitmap files from and for other programs: the pixels are the same on both sides.
#include "engine/Dib.h"
#include "platform/File.h"
#include "support/Archive.h"
#include "tests/TempFolder.h"
#include "tests/Testing.h"
#include "tests/engine/BitmapMaking.h"

#include <bit>
#include <csignal>
#include <sys/resource.h>

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
                for (int i = 0; i < 3; ++i)
                    rgb[static_cast<std::size_t>(i)] =
                        Scaled(dib.GetPixel(x, y), bits == 16 ? dib.GetMask(i) : 0xFF0000u >> 8 * i);
            }
            for (const std::uint32_t component : rgb)
                seen.rgb += static_cast<char>(component);
        }
    }
    return seen;
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
        int bitCount;
        unsigned colours;
        const char* command;
    };
    const Case cases[] = {
        {"1 bit", 1, 2, IMAGEMAGICK " truth.ppm -type bilevel BMP3:file.bmp"},
        {"4 bits", 4, 9, IMAGEMAGICK " truth.ppm -type palette -compress none BMP3:file.bmp"},
        {"8 bits", 8, 100, IMAGEMAGICK " truth.ppm -type palette -compress none BMP3:file.bmp"},
        {"24 bits", 24, 5000, IMAGEMAGICK " truth.ppm -type truecolor BMP3:file.bmp"},
        {"32 bits", 32, 5000, "ffmpeg -v error -i truth.ppm -pix_fmt bgra file.bmp"},
    };
    for (const Case& test : cases) {
        for (const auto& [width, height] : {std::pair{32, 9}, {37, 5}}) {
            SCOPED_TRACE(std::string(test.name) + ", " + std::to_string(width));
            const Picture truth = MakePicture(width, height, test.colours);
            ASSERT_NO_FATAL_FAILURE(Make(truth, std::string("rm -f file.bmp && ") + test.command));
            Dib dib;
            ASSERT_TRUE(Load("file.bmp", dib));
            ASSERT_EQ(dib.GetBitCount(), test.bitCount);
            EXPECT_EQ(Seen(dib), truth);

            Shell("cat file.bmp file.bmp > two.bmp");
            File two;
            ASSERT_TRUE(two.Open(Wide(m_folder / "two.bmp"), File::Mode::Read));
            EXPECT_TRUE(dib.SkipInFile(two));
            EXPECT_TRUE(dib.LoadHeader(two)) << "it stands at the second one";
        }
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

// Within the header, where the pixels begin, and within those of them that do not exist.
TEST_F(BitmapExchange, AFileThatMayNotGrowIsNotWritten) {
    std::signal(SIGXFSZ, SIG_IGN);
    rlimit before{};
    getrlimit(RLIMIT_FSIZE, &before);
    for (const rlim_t most : {30, 54, 60, 70}) {
        Bitmap bitmap(MakeHeader(2, 4, 16), {1});
        const rlimit limit{most, before.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limit);
        const bool isWritten = bitmap.dib.WriteToPath(Wide(m_folder / "full.bmp"));
        setrlimit(RLIMIT_FSIZE, &before);
        EXPECT_EQ(isWritten, most == 70) << most;
    }
}

} // namespace
