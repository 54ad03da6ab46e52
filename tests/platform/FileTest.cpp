#include "platform/File.h"
#include "tests/TempFolder.h"
#include "tests/Testing.h"

using scenedetect::File;

TEST(File, WritesReadsAndSkipsUnderANameBeyondAscii) {
    const TempFolder folder;
    const auto name = folder / std::filesystem::path(u8"K\u00e4se \u65e5\U0001F3AC.bin");
    const std::wstring path = Wide(folder / "") + L"K\u00e4se \u65e5\U0001F3AC.bin";
    File file;
    ASSERT_TRUE(file.Open(path, File::Mode::Write));
    EXPECT_TRUE(file.Write("0123456789", 10));
    EXPECT_TRUE(file.Close());
    EXPECT_FALSE(file.IsOpen());
    EXPECT_TRUE(std::filesystem::exists(name)) << "the test process runs in the \"C\" locale";

    ASSERT_TRUE(file.Open(path, File::Mode::Read));
    std::array<char, 8> data{};
    EXPECT_EQ(file.Read(data.data(), 2), 2u);
    EXPECT_TRUE(file.SeekForward(3));
    EXPECT_EQ(file.Read(data.data(), data.size()), 5u);
    EXPECT_EQ(std::string(data.data(), 5), "56789");
    EXPECT_TRUE(file.SeekForward(-10));
    EXPECT_FALSE(file.SeekForward(-1)) << "before the start";
}

TEST(File, WritingEmptiesWhatWasThereAndSharesTheFile) {
    const TempFolder folder;
    const auto path = folder / "shared";
    std::ofstream(path) << "long old text";
    File file;
    ASSERT_TRUE(file.Open(Wide(path), File::Mode::Write));
    EXPECT_TRUE(file.Write("new", 3));
    EXPECT_EQ(ReadWhole(path), "new") << "while the file is still open";
    File second;
    EXPECT_TRUE(second.Open(Wide(path), File::Mode::Read));
    EXPECT_TRUE(second.Open(Wide(path), File::Mode::Write));
    EXPECT_TRUE(second.Write("newer", 5));
    EXPECT_TRUE(file.Write("!", 1)) << "each at its own place";
    EXPECT_EQ(ReadWhole(path), "new!r");
}

TEST(File, ReportsWhatTheSystemRefuses) {
    const TempFolder folder;
    File file;
    EXPECT_FALSE(file.Open(Wide(folder / "missing" / "file"), File::Mode::Write));
    EXPECT_FALSE(file.Open(Wide(folder / "missing"), File::Mode::Read));
    EXPECT_FALSE(file.IsOpen());
    const auto path = folder / "to read";
    std::ofstream(path) << "text";
    ASSERT_TRUE(file.Open(Wide(path), File::Mode::Read));
    EXPECT_FALSE(file.Write("x", 1));
}
