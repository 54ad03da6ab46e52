#include "products/files/OutputFile.h"

#include "products/files/OutputClaims.h"
#include "reading/base/HostError.h"
#include "tests/MessageOf.h"
#include "tests/TempFolder.h"
#include "tests/Testing.h"

#include <csignal>
#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

namespace fs = std::filesystem;

class OutputFileTest : public Test {
  protected:
    [[nodiscard]] std::ptrdiff_t FileCount() const {
        return std::distance(fs::directory_iterator(m_folder / ""), fs::directory_iterator());
    }

    TempFolder m_folder;
    const std::string m_path = m_folder / "out.csv";
};

TEST_F(OutputFileTest, AppearsWhenWhole) {
    OutputFile(m_path, Existing::Replace).Write("half");
    EXPECT_EQ(FileCount(), 0);
    const std::string large(100'000, 'x');
    {
        OutputFile file(m_path, Existing::Keep);
        for (const std::string& piece : {std::string("a"), large, std::string("b")})
            file.Write(piece);
        file.Flush();
        EXPECT_EQ(ReadWhole(file.WritingPath()), "a" + large + "b");
        EXPECT_FALSE(fs::exists(m_path));
        EXPECT_EQ(fs::path(file.WritingPath()).parent_path(), fs::path(m_path).parent_path());
        file.Write("c");
        EXPECT_EQ(file.Size(), 100'003);
        file.Commit();
    }
    EXPECT_EQ(ReadWhole(m_path), "a" + large + "bc");
    EXPECT_EQ(FileCount(), 1);
}

TEST_F(OutputFileTest, MakesItsFolder) {
    WriteFile(m_folder / "a" / "b" / "x", Existing::Keep, "x");
    EXPECT_EQ(ReadWhole(m_folder / "a" / "b" / "x"), "x");
    WriteFile(m_path, Existing::Keep, "");
    EXPECT_THAT(MessageOf([&] { WriteFile(m_path + "/x", Existing::Keep, "x"); }),
                HasSubstr(m_path + "/x: cannot be written: Not a directory"));
}

TEST_F(OutputFileTest, TheTailGoesToAnother) {
    OutputFile file(m_path, Existing::Keep);
    OutputFile next(m_folder / "next", Existing::Keep);
    const std::string tail(100'000, 'x');
    file.Write("head" + tail);
    file.Write("end");
    next.Write("before ");
    file.MoveTail(4, next);
    EXPECT_EQ(file.Size(), 4);
    file.Write(" goes on");
    file.Commit();
    next.Commit();
    EXPECT_EQ(ReadWhole(m_path), "head goes on");
    EXPECT_EQ(ReadWhole(m_folder / "next"), "before " + tail + "end");
}

TEST_F(OutputFileTest, HasTheModeOfTheUmask) {
    const mode_t before = umask(027);
    WriteFile(m_path, Existing::Keep, "x");
    umask(before);
    EXPECT_EQ(fs::status(m_path).permissions(), static_cast<fs::perms>(0640));
}

TEST_F(OutputFileTest, KeepsOrReplacesWhatIsThere) {
    WriteFile(m_path, Existing::Keep, "old");
    EXPECT_EQ(MessageOf([&] { OutputFile(m_path, Existing::Keep); }),
              m_path + ": exists already; --force overwrites it");
    WriteFile(m_path, Existing::Replace, "new");
    EXPECT_EQ(ReadWhole(m_path), "new");

    fs::remove(m_path);
    OutputFile late(m_path, Existing::Keep);
    WriteFile(m_path, Existing::Keep, "came first");
    EXPECT_THAT(MessageOf([&] { late.Commit(); }), HasSubstr("exists already"));
    EXPECT_EQ(ReadWhole(m_path), "came first");
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

TEST_F(OutputFileTest, ObstaclesShowBeforehand) {
    WriteFile(m_path, Existing::Keep, "old");
    RequireWritable(m_path, Existing::Replace);
    RequireWritable(m_folder / "new", Existing::Keep);
    RequireWritable(m_folder / "no" / "such" / "folder", Existing::Keep);
    RequireWritable("-", Existing::Keep);
    EXPECT_EQ(ReadWhole(m_path), "old");
    EXPECT_EQ(FileCount(), 1);

    const auto obstacle = [](const std::string& path) {
        return MessageOf([&] { RequireWritable(path, Existing::Keep); });
    };
    EXPECT_THAT(obstacle(m_path), HasSubstr("exists already"));
    EXPECT_THAT(obstacle(m_path + "/x"), HasSubstr("Not a directory"));
    EXPECT_THAT(obstacle(m_folder / ""), HasSubstr("Is a directory"));
    EXPECT_THAT(obstacle(""), HasSubstr("without a name"));
}

TEST_F(OutputFileTest, ARunClaimsANameOnce) {
    fs::create_directory(m_folder / "sub");
    OutputClaims claims;
    claims.Claim(m_path);
    claims.Claim(m_folder / "other");
    EXPECT_THAT(MessageOf([&] { claims.Claim(m_folder / "sub" / ".." / "out.csv"); }),
                HasSubstr("would be written twice by this run"));
    claims.Claim("/dev/null");
    claims.Claim("/dev/null");
    EXPECT_FALSE(claims.HasStandardOutput());
    claims.Claim("-");
    EXPECT_TRUE(claims.HasStandardOutput());
    EXPECT_EQ(MessageOf([&] { claims.Claim("/dev/stdout"); }),
              "/dev/stdout: only one output of one input can go there");

    const fs::path before = fs::current_path();
    fs::current_path(m_folder / "");
    claims.Claim("new.csv");
    EXPECT_THAT(MessageOf([&] { claims.Claim("./new.csv"); }), HasSubstr("would be written twice"));
    fs::current_path(before);

    WriteFile(m_folder / "tape", Existing::Keep, "");
    fs::create_hard_link(m_folder / "tape", m_folder / "same");
    claims.AddInput(m_folder / "tape");
    EXPECT_THAT(MessageOf([&] { claims.Claim(m_folder / "same"); }), HasSubstr("is an input of this run"));
}

} // namespace
