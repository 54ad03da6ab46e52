#include "engine/BitmapHeader.h"
#include "engine/Dib.h"
#include "platform/File.h"
#include "support/Archive.h"
#include "tests/TempFolder.h"
#include "tests/Testing.h"
#include "tests/engine/BitmapMaking.h"
#include "tests/engine/LogRecorder.h"

namespace {

constexpr const wchar_t* kCutLine = L"700/1 Dib::LoadFromArchive can't read bits\n";
constexpr const wchar_t* kMemoryLine = L"700/1 Dib::LoadFromArchive: malloc failed\n";

using Lines = std::vector<std::wstring>;

class DibArchive : public Test {
  protected:
    std::string Stored(Dib& dib) {
        File file;
        EXPECT_TRUE(file.Open(Wide(m_path), File::Mode::Write));
        Archive archive(file, Archive::Mode::Store);
        dib.Serialize(archive);
        file.Close();
        return ReadWhole(m_path);
    }
    // 0, the cause of an archive exception, or -1 when memory ran out.
    int Load(const std::string& bytes, Dib& dib) {
        std::ofstream(m_path, std::ios::binary) << bytes;
        File file;
        EXPECT_TRUE(file.Open(Wide(m_path), File::Mode::Read));
        Archive archive(file, Archive::Mode::Load);
        try {
            dib.Serialize(archive);
        } catch (const ArchiveException& error) {
            return error.GetCause();
        } catch (const std::bad_alloc&) {
            return -1;
        }
        return 0;
    }
    static std::string HeaderText(const BITMAPINFOHEADER& header) {
        return {reinterpret_cast<const char*>(&header), sizeof header};
    }

  private:
    TempFolder m_folder;
    const std::filesystem::path m_path = m_folder / "archive";
};

TEST_F(DibArchive, PicturesComeBackAsTheyWere) {
    for (const int bitCount : {1, 4, 8, 16, 24, 32}) {
        for (const auto& [height, headerSize] : {std::pair{5, 40u}, {-5, 40u}, {5, 108u}, {5, 124u}}) {
            const DWORD compression = bitCount == 16 ? BI_BITFIELDS : BI_RGB;
            BITMAPINFOHEADER header = MakeHeader(8, height, bitCount, compression);
            header.biSize = headerSize;
            Bitmap bitmap(header, RandomBytes(static_cast<std::size_t>(BitsSize(header)), 1),
                          RandomBytes(static_cast<std::size_t>(HeaderSize(header)) - sizeof header, 2));
            const std::string bytes = Stored(bitmap.dib);
            ASSERT_EQ(bytes, std::string(bitmap.block.begin(), bitmap.block.end()) +
                                 std::string(bitmap.pixels.begin(), bitmap.pixels.end()));
            Dib loaded;
            ASSERT_EQ(Load(bytes + "more", loaded), 0) << bitCount;
            EXPECT_EQ(Stored(loaded), bytes) << bitCount;
            EXPECT_EQ(loaded.GetPixel(0, 4), bitmap.dib.GetPixel(0, 4));
            // Whatever size the header gives itself, its colours are read right after 40 bytes.
            EXPECT_EQ(loaded.GetColour(1).rgbGreen, bitmap.block.size() > 45 ? bitmap.block[45] : 0);
        }
    }
}

TEST_F(DibArchive, EveryTruncationIsRefused) {
    Bitmap bitmap(MakeHeader(4, 3, 8), RandomBytes(12, 3), RandomBytes(1024, 4));
    const std::string whole = Stored(bitmap.dib);
    ASSERT_EQ(whole.size(), 40u + 1024 + 12);
    for (std::size_t length = 0; length < whole.size(); ++length) {
        const LogRecorder log;
        Dib dib;
        ASSERT_TRUE(dib.Create(1, 1, 8, false));
        ASSERT_EQ(Load(whole.substr(0, length), dib), ArchiveException::badIndex) << length;
        EXPECT_EQ(dib.GetInfo(), nullptr);
        EXPECT_EQ(log.lines, length < 40 ? Lines{} : Lines{kCutLine}) << length;
    }
    Dib dib;
    EXPECT_EQ(Load(whole, dib), 0);
}

TEST_F(DibArchive, SizesThatAreNotThereAreRefused) {
    struct Case {
        const char* name;
        BITMAPINFOHEADER header;
        int result;
        const wchar_t* line;
    };
    const auto with = [](auto change) {
        BITMAPINFOHEADER header = MakeHeader(2, 2, 24);
        change(header);
        return header;
    };
    const Case cases[] = {
        {"two gigabytes stated", with([](auto& h) { h.biSizeImage = INT32_MAX; }), -1, kMemoryLine},
        {"half a gigabyte stated", with([](auto& h) { h.biSizeImage = 1u << 29; }), 5, kCutLine},
        {"extreme sizes", MakeHeader(INT32_MAX, INT32_MIN, 32), -1, kMemoryLine},
        {"extreme colours", with([](auto& h) { h.biClrUsed = UINT32_MAX; }), -1, kMemoryLine},
        {"a header of two gigabytes", with([](auto& h) { h.biSize = INT32_MAX; }), -1, kMemoryLine},
    };
    for (const Case& test : cases) {
        const LogRecorder log;
        Dib dib;
        EXPECT_EQ(Load(HeaderText(test.header) + std::string(4096, '\0'), dib), test.result) << test.name;
        EXPECT_FALSE(dib.IsValid());
        EXPECT_EQ(log.lines, Lines{test.line}) << test.name;
        // What loading refuses for its size is not stored either.
        if (test.result == -1) {
            Bitmap bitmap(test.header, {1, 2, 3, 4});
            EXPECT_THROW(Stored(bitmap.dib), ArchiveException) << test.name;
        }
    }
    Dib dib;
    EXPECT_EQ(Stored(dib), "");
    // A negative width has rows of no bytes. A shorter header has its pixels within the 40 bytes.
    EXPECT_EQ(Load(HeaderText(with([](auto& h) { h.biWidth = -2; })), dib), 0);
    EXPECT_EQ(dib.GetBitsExtent(), 0u);
    const std::string shorter = HeaderText(with([](auto& h) { h.biSize = 12, h.biSizeImage = 29; }));
    EXPECT_EQ(Load(shorter, dib), 5) << "a byte is missing";
    EXPECT_EQ(Load(shorter + "x", dib), 0);
    EXPECT_EQ(dib.GetBits()[0] + 256 * dib.GetBits()[2], 1 + 256 * 24) << "planes and bit count";
    EXPECT_EQ(dib.GetBits()[28], 'x');
    EXPECT_EQ(Load(HeaderText(with([](auto& h) { h.biSize = 4; })), dib), 0);
    EXPECT_EQ(dib.GetBits()[0], 2) << "the width";
    EXPECT_EQ(dib.GetBitsExtent(), 16u);
}

TEST(DibDevice, BitmapsOfSeveralPlanesCountAsOne) {
    const auto headerOf = [](WORD planes, WORD bits) {
        BITMAP bitmap{};
        bitmap.bmWidth = 7;
        bitmap.bmHeight = 3;
        bitmap.bmPlanes = planes;
        bitmap.bmBitsPixel = bits;
        return HeaderOf(bitmap);
    };
    EXPECT_EQ(headerOf(1, 8).biBitCount, 8);
    EXPECT_EQ(headerOf(4, 1).biBitCount, 4);
    EXPECT_EQ(headerOf(4, 1).biPlanes, 1);
    EXPECT_EQ(HeaderSize(headerOf(4, 1)), 40 + 16 * 4);
    EXPECT_EQ(BitsSize(headerOf(1, 24)), 3 * 24);
}

TEST(DibDevice, IsRefusedWithoutABitmap) {
    Dib dib;
    ASSERT_TRUE(dib.Create(1, 1, 8, false));
    EXPECT_FALSE(dib.CreateFromBitmap(nullptr, nullptr));
    EXPECT_FALSE(dib.IsValid());
    EXPECT_EQ(dib.CreateDDB(nullptr), nullptr);
}

} // namespace
