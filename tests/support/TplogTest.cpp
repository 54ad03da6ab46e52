#include "platform/DynamicLibrary.h"
#include "support/DebugLog.h"
#include "tests/TempFolder.h"
#include "tests/Testing.h"
#include "tests/support/LogChild.h"

#include <cstdarg>

namespace {

void SetVariables(const char* level, const std::string& file) {
    setenv("TPLOG_LEVEL", level, 1);
    setenv("TPLOG_FILE", file.c_str(), 1);
}

void PrintOneOfEachLevel() {
    for (const std::uint32_t level : {0u, 1u, 5u, 31u})
        DebugPrintAt(702, level, L"%s\n", L"text");
    DebugPrint(L"support");
}

void PrintList(const char16_t* format, ...) {
    DynamicLibrary library;
    if (!library.Open(L"libtplog.so"))
        return;
    using Entry = void(std::uint32_t, std::uint32_t, const char16_t*, std::va_list);
    std::va_list arguments;
    va_start(arguments, format);
    reinterpret_cast<Entry*>(library.Find("tpcore_wvPrintf"))(700, 1, format, arguments);
    va_end(arguments);
}

} // namespace

TEST(Tplog, LevelsSelectMessagesByCategory) {
    struct Case {
        const char* level;
        const char* printed;
    };
    const Case cases[] = {
        {"", "702/0 text\n702/1 text\n702/5 text\n700/1 support\n"},
        {"0", "702/0 text\n"},
        {"702:31,0", "702/0 text\n702/1 text\n702/5 text\n702/31 text\n"},
        {"1,702:0", "702/0 text\n700/1 support\n"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.level);
        EXPECT_CHILD_PRINTS((SetVariables(c.level, "stderr"), PrintOneOfEachLevel()), StrEq(c.printed));
    }
    EXPECT_CHILD_PRINTS(
        (SetVariables("702:31,0", ""),
         std::fprintf(stderr, "%d%d", IsDebugLevelActive(702, 31), IsDebugLevelActive(700, 1))),
        StrEq("10"));
    EXPECT_CHILD_PRINTS((SetVariables("702:,0", "stderr"), PrintOneOfEachLevel()),
                        AllOf(HasSubstr("tplog: TPLOG_LEVEL=702:,0"), HasSubstr("\n702/0 text\n")));
}

TEST(Tplog, FinishedTextPrintsAsItStands) {
    const auto print = [](const wchar_t* text) {
        SetVariables("", "stderr");
        DebugPrint(L"%s", text);
    };
    EXPECT_CHILD_PRINTS(print(L"%s%n%d 100%% 100%\u00e9%"), StrEq("700/1 %s%n%d 100% 100%\xC3\xA9%\n"));
    EXPECT_CHILD_PRINTS(print(L"two\nlines\n"), StrEq("700/1 two lines\n"));
}

TEST(Tplog, TheListFormFillsPlaceholders) {
    setenv("TPLOG_FILE", "stderr", 1);
    EXPECT_CHILD_PRINTS(
        PrintList(u"%d|%5.2f|%-4s|%lx|%lld|%%|%c", -3, 2.5, u"ab", 255ul, 1ll << 40, u'\u00e9'),
        StrEq("700/1 -3| 2.50|ab  |ff|1099511627776|%|\xC3\xA9\n"));
    EXPECT_CHILD_PRINTS(PrintList(u"%S|%hs|%*.*s|%s", "na\xC3\xA9", "rrow", -3, 1, u"xyz", nullptr),
                        StrEq("700/1 na\xC3\xA9|rrow|x  |(null)\n"));
    EXPECT_CHILD_PRINTS(PrintList(u"%n %y %5", nullptr), StrEq("700/1 %n %y %5\n"));
}

TEST(Tplog, AFileCollectsWholeLinesOfAllThreads) {
    const TempFolder folder;
    const std::string path = (folder / "log").string();
    const auto logFromThreads = [&] {
        SetVariables("5", path);
        std::vector<std::thread> threads;
        for (int t = 0; t < 4; ++t)
            threads.emplace_back([] {
                for (int i = 0; i < 200; ++i)
                    DebugPrint(L"%s", std::wstring(100, L'x').c_str());
            });
        for (std::thread& thread : threads)
            thread.join();
    };
    EXPECT_CHILD_PRINTS(logFromThreads(), StrEq(""));
    std::ifstream file(path);
    std::string line;
    int lines = 0;
    for (; std::getline(file, line); ++lines)
        ASSERT_EQ(line, "700/1 " + std::string(100, 'x'));
    EXPECT_EQ(lines, 800);
}

TEST(Tplog, AFileThatCannotBeOpenedIsNamedOnce) {
    EXPECT_CHILD_PRINTS(
        (SetVariables("1", "/no/such/folder/log"), DebugPrint(L"heard")),
        StrEq("tplog: cannot open TPLOG_FILE=/no/such/folder/log (No such file or directory); "
              "messages go to stderr\n700/1 heard\n"));
}
