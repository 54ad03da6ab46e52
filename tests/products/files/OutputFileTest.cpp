#include "tests/products/files/OutputFileTest.h"

#include "products/files/OutputClaims.h"

namespace {

namespace fs = std::filesystem;

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
    WriteFile(In("a/b/x"), Existing::Keep, "x");
    EXPECT_EQ(ReadWhole(m_folder / "a" / "b" / "x"), "x");
    WriteFile(m_path, Existing::Keep, "");
    EXPECT_THAT(MessageOf([&] { WriteFile(m_path + "/x", Existing::Keep, "x"); }),
                HasSubstr(m_path + "/x: cannot be written: " + WriteErrorText(NoFolderError())));
}

TEST_F(OutputFileTest, TheTailGoesToAnother) {
    OutputFile file(m_path, Existing::Keep);
    OutputFile next(In("next"), Existing::Keep);
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

TEST_F(OutputFileTest, ObstaclesShowBeforehand) {
    WriteFile(m_path, Existing::Keep, "old");
    RequireWritable(m_path, Existing::Replace);
    RequireWritable(In("new"), Existing::Keep);
    RequireWritable(In("no/such/folder"), Existing::Keep);
    RequireWritable("-", Existing::Keep);
    EXPECT_EQ(ReadWhole(m_path), "old");
    EXPECT_EQ(FileCount(), 1);

    const auto obstacle = [](const std::string& path) {
        return MessageOf([&] { RequireWritable(path, Existing::Keep); });
    };
    EXPECT_THAT(obstacle(m_path), HasSubstr("exists already"));
    EXPECT_THAT(obstacle(m_path + "/x"), HasSubstr(WriteErrorText(NoFolderError())));
    EXPECT_THAT(obstacle(In("")), HasSubstr("cannot be written: "));
    EXPECT_THAT(obstacle(""), HasSubstr("without a name"));
}

TEST_F(OutputFileTest, ARunClaimsANameOnce) {
    fs::create_directory(m_folder / "sub");
    OutputClaims claims;
    claims.Claim(m_path);
    claims.Claim(In("other"));
    EXPECT_THAT(MessageOf([&] { claims.Claim(In("sub/../out.csv")); }),
                HasSubstr("would be written twice by this run"));
    WriteFile(kNothing, Existing::Keep, "gone");
    claims.Claim(kNothing);
    claims.Claim(kNothing);
    EXPECT_FALSE(claims.HasStandardOutput());
    claims.Claim("-");
    EXPECT_TRUE(claims.HasStandardOutput());
    EXPECT_EQ(MessageOf([&] { claims.Claim("-"); }),
              "standard output: only one output of one input can go there");

    const fs::path before = fs::current_path();
    fs::current_path(m_folder / "");
    claims.Claim("new.csv");
    EXPECT_THAT(MessageOf([&] { claims.Claim("./new.csv"); }), HasSubstr("would be written twice"));
    fs::current_path(before);

    WriteFile(In("tape"), Existing::Keep, "");
    fs::create_hard_link(m_folder / "tape", m_folder / "same");
    claims.AddInput(In("tape"));
    EXPECT_THAT(MessageOf([&] { claims.Claim(In("same")); }), HasSubstr("is an input of this run"));
}

} // namespace
