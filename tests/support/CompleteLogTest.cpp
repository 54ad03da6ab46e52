#include "support/DebugLog.h"
#include "tests/Testing.h"
#include "tests/support/LogChild.h"

#include <latch>

namespace {

std::atomic<bool> g_memoryIsOut{false};
std::atomic<int> g_allocations{0};
std::atomic<int> g_logged{0}; // by a thread that does nothing else
bool g_logsLate = false;
bool g_lingers = false;

void AwaitLogged(int times) {
    for (const int target = g_logged + times; g_logged < target;)
        std::this_thread::yield();
}

// Made before and destroyed after all other static objects of the program.
struct LateLogger {
    ~LateLogger() {
        if (g_lingers)
            AwaitLogged(2); // the thread has come back from the library
        if (!g_logsLate)
            return;
        DebugPrint(L"too late");
        std::fprintf(stderr, "late active=%d", IsDebugLevelActive(702, 31));
    }
};
[[gnu::init_priority(101)]] LateLogger g_lateLogger;

int Count(const std::string& text, const std::string& part) {
    int count = 0;
    for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1))
        ++count;
    return count;
}

template <typename Unit>
std::basic_string<Unit> Repeated(const Unit* text, std::size_t count) {
    std::basic_string<Unit> repeated;
    for (; count > 0; --count)
        repeated += text;
    return repeated;
}

} // namespace

// Not inlined: the compiler would take the pair for a mismatch of new and free.
[[gnu::noinline]] void* operator new(std::size_t bytes) {
    ++g_allocations;
    if (g_memoryIsOut)
        throw std::bad_alloc();
    if (void* memory = std::malloc(bytes))
        return memory;
    throw std::bad_alloc();
}
[[gnu::noinline]] void operator delete(void* memory) noexcept {
    std::free(memory);
}
[[gnu::noinline]] void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}

TEST(CompleteLog, MessagesArriveAsTheyAreOnceExpanded) {
    struct Case {
        const char* name;
        std::wstring argument; // of the format "%s"
        std::string forwarded;
    };
    constexpr std::size_t most = 511 / (std::size(L"\U0001F3AC") - 1); // a character may take two places
    const Case cases[] = {
        {"a newline is supplied", L"Dib::Copy no bitmap", "Dib::Copy no bitmap\n"},
        {"a newline is there", L"Dib::Copy no bitmap\n", "Dib::Copy no bitmap\n"},
        {"empty", L"", ""},
        {"beyond ASCII", L"\u00e9\u65e5\U0001F3AC", "\xC3\xA9\xE6\x97\xA5\xF0\x9F\x8E\xAC\n"},
        {"placeholders stay placeholders", L"100%% %s.xml", "100%% %s.xml\n"},
        {"510 characters", std::wstring(510, L'x'), std::string(510, 'x') + "\n"},
        {"511 characters", std::wstring(511, L'x'), std::string(511, 'x')},
        {"512 characters", std::wstring(512, L'x'), std::string(511, 'x')},
        {"a newline beyond the end", std::wstring(600, L'x') + L"\n", std::string(511, 'x')},
        {"as many as fit of two units each", Repeated<wchar_t>(L"\U0001F3AC", most),
         Repeated<char>("\xF0\x9F\x8E\xAC", most) + (most < 511 ? "\n" : "")},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_CHILD_PRINTS(DebugPrintAt(702, 5, L"%s", c.argument.c_str()),
                            HasSubstr("{702/5 " + c.forwarded + "}"));
    }
    EXPECT_CHILD_PRINTS(DebugPrint(L"pos = %d\n", -7), HasSubstr("{700/1 pos = -7\n}"));
    // Some systems have a character for this byte in the "C" locale, in which tests run, and some have not.
    const char* printed = std::btowc(0xFF) == WEOF ? "{700/1 }" : "{700/1 formatted: \xC3\xBF\n}";
    EXPECT_CHILD_PRINTS(DebugPrint(L"formatted: %hs", "\xFF"), HasSubstr(printed));
}

TEST(CompleteLog, TheLibraryDecidesWhatIsActive) {
    EXPECT_CHILD_PRINTS(std::fprintf(stderr, "%d%d%d", IsDebugLevelActive(702, 31),
                                     IsDebugLevelActive(702, 0), IsDebugLevelActive(700, 31)),
                        HasSubstr("100"));
}

TEST(CompleteLog, ManyThreadsBindOneLibraryAndLoseNothing) {
    const auto logFromThreads = [] {
        constexpr int kThreads = 8;
        std::latch start(kThreads);
        std::vector<std::thread> threads;
        for (int t = 0; t < kThreads; ++t)
            threads.emplace_back([&start] {
                start.arrive_and_wait();
                DebugPrint(L"hello");
            });
        for (std::thread& thread : threads)
            thread.join();
    };
    const auto oneLoadAndAllMessages = [](const std::string& text) {
        return Count(text, "{loaded}") == 1 && Count(text, "{700/1 hello\n}") == 8;
    };
    EXPECT_CHILD_PRINTS(logFromThreads(), Truly(oneLoadAndAllMessages));
}

TEST(CompleteLog, WithoutMemoryTheNextCallTriesAgain) {
    const auto bindTwice = [] {
        g_memoryIsOut = true;
        DebugPrint(L"lost");
        const bool first = IsDebugLevelActive(702, 31);
        g_memoryIsOut = false;
        std::fprintf(stderr, "first %d then %d", first, IsDebugLevelActive(702, 31));
    };
    EXPECT_CHILD_PRINTS(bindTwice(),
                        AllOf(HasSubstr("first 0"), HasSubstr("then 1"), Not(HasSubstr("lost"))));
}

TEST(CompleteLog, AskingAndFormattingAllocateNothing) {
    const auto countAllocations = [] {
        bool active = IsDebugLevelActive(702, 31);
        const int before = g_allocations;
        active = active && IsDebugLevelActive(702, 31);
        DebugPrintAt(0, 0, L"%s, pos = %d", L"not recorded", 7);
        std::fprintf(stderr, "active %d allocations %d", active, g_allocations - before);
    };
    EXPECT_CHILD_PRINTS(countAllocations(), HasSubstr("active 1 allocations 0"));
}

TEST(CompleteLog, AfterTheTearDownAllIsSilent) {
    const auto logAtTheEnd = [] {
        g_logsLate = true;
        DebugPrint(L"in time");
    };
    EXPECT_CHILD_PRINTS(logAtTheEnd(), AllOf(HasSubstr("{700/1 in time\n}{released}"),
                                             HasSubstr("late active=0"), Not(HasSubstr("too late"))));
}

TEST(CompleteLog, AThreadMayLogWhileTheProcessEnds) {
    const auto endWhileLogging = [] {
        g_lingers = true;
        std::thread([] {
            for (;; ++g_logged)
                DebugPrintAt(1, 0, L"still here");
        }).detach();
        AwaitLogged(2);
    };
    EXPECT_CHILD_PRINTS(endWhileLogging(), HasSubstr("still here"));
}
