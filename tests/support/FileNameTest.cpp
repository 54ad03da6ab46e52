#include "support/FileName.h"
#include "tests/Testing.h"

namespace {

TEST(FileName, IsTrimmedAndRepaired) {
    struct Case {
        const wchar_t* text;
        const wchar_t* valid;
        bool replaced;
    };
    const Case cases[] = {
        {L"  a:b  ", L"a-b", true},
        {L" ab\t\n", L"ab", false},
        {L" \t ", L"", false},
        {L"", L"", false},
        {L"<a> ", L"<a>", false},
        {L"tape 1?*", L"tape 1 _", true},
        {L":/|?*\"\\", L"--- _'-", true},
        {L"?", L" ", true}, // what was put in is not trimmed
        {L"B\u00E4nder: \u65E5\u672C", L"B\u00E4nder- \u65E5\u672C", true},
    };
    for (const Case& test : cases) {
        std::wstring text = test.text;
        const bool invalid = ContainsInvalidFileNameChar(text);
        EXPECT_EQ(MakeValidFileName(text), test.replaced);
        EXPECT_EQ(text, test.valid);
        EXPECT_EQ(invalid, test.replaced);
    }
}

TEST(FileName, CharactersAreReplacedByPlace) {
    std::wstring text = L"abcabc";
    EXPECT_TRUE(ReplaceChars(text, L"ca", L"12"));
    EXPECT_EQ(text, L"2b12b1");
    EXPECT_FALSE(ReplaceChars(text, L"xyz", L"123"));
    EXPECT_FALSE(ReplaceChars(text, L"b", L"")) << "nothing to put there";
    text.clear();
    EXPECT_FALSE(ReplaceChars(text, L"a", L"b"));
}

TEST(FileName, ProgramPathIsThisProgram) {
    std::wstring text;
    GetHostExecutablePath(text);
    const std::filesystem::path path(text);
    EXPECT_TRUE(path.is_absolute());
    EXPECT_EQ(path.stem(), "support_tests");
    EXPECT_TRUE(std::filesystem::exists(path));
    EXPECT_LE(text.size(), 259u);
}

} // namespace
