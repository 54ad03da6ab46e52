#include "tests/products/files/OutputFileTest.h"

#include <csignal>
#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

namespace fs = std::filesystem;

TEST_F(OutputFileTest, HasTheModeOfTheUmask) {
    const mode_t before = umask(027);
    WriteFile(m_path, Existing::Keep, "x");
    umask(before);
    EXPECT_EQ(fs::status(m_path).permissions(), static_cast<fs::perms>(0640));
}

TEST_F(OutputFileTest, LinksStayLinks) {
    const fs::path link = m_folder / "link";
    fs::create_directory(m_folder / "sub");
    for (const char* const target : {"out.csv", "sub/not there yet"}) {
        fs::remove(link);
        fs::create_symlink(target, link);
        WriteFile(link, Existing::Replace, target);
        EXPECT_TRUE(fs::is_symlink(link));
        EXPECT_EQ(ReadWhole(m_folder / target), target);
    }
    fs::remove(link);
    fs::create_symlink("link", link);
    EXPECT_THAT(MessageOf([&] { OutputFile(link, Existing::Replace); }), HasSubstr("cannot be written"));
}

TEST_F(OutputFileTest, PipesAndDevicesAreWrittenStraight) {
    WriteFile("/dev/null", Existing::Keep, "gone");
    EXPECT_TRUE(fs::is_character_file("/dev/null"));
    EXPECT_EQ(
        MessageOf([] { WriteFile("/dev/full", Existing::Keep, "x"); }),
        "/dev/full: cannot be written: No space left on device; make room there, or choose another folder");

    ASSERT_EQ(mkfifo(m_path.c_str(), 0600), 0);
    std::string got;
    std::thread reader([&] { got = ReadWhole(m_path); });
    WriteFile(m_path, Existing::Keep, "through");
    reader.join();
    EXPECT_EQ(got, "through");
    EXPECT_TRUE(fs::is_fifo(m_path));
}

TEST_F(OutputFileTest, StandardOutputGoesOnWhereItIs) {
    for (const char* const name : {"-", "/dev/stdout", "/dev/fd/1"}) {
        SCOPED_TRACE(name);
        const int before = dup(STDOUT_FILENO);
        const int file = open(m_path.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
        dup2(file, STDOUT_FILENO);
        close(file);
        ASSERT_EQ(write(STDOUT_FILENO, "1", 1), 1);
        WriteFile(name, Existing::Keep, "2");
        ASSERT_EQ(write(STDOUT_FILENO, "3", 1), 1);
        dup2(before, STDOUT_FILENO);
        close(before);
        EXPECT_EQ(ReadWhole(m_path), "123");
    }
}

TEST_F(OutputFileTest, AFileAtItsLimitLeavesNothing) {
    WriteFile(m_path, Existing::Keep, "old");
    rlimit before{};
    getrlimit(RLIMIT_FSIZE, &before);
    std::signal(SIGXFSZ, SIG_IGN);
    const rlimit limit{1000, before.rlim_max};
    setrlimit(RLIMIT_FSIZE, &limit);
    const std::string message =
        MessageOf([&] { WriteFile(m_path, Existing::Replace, std::string(2000, 'x')); });
    setrlimit(RLIMIT_FSIZE, &before);
    EXPECT_THAT(message, HasSubstr(m_path + ": cannot be written: File too large"));
    EXPECT_EQ(ReadWhole(m_path), "old");
    EXPECT_EQ(FileCount(), 1);
}

} // namespace
