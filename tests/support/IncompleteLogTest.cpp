#include "support/DebugLog.h"
#include "tests/Testing.h"
#include "tests/support/LogChild.h"

// The library lacks the list form of printing, which nobody calls.
TEST(IncompleteLog, IsReleasedAtOnceAndNeverTriedAgain) {
    const auto useTwice = [] {
        for (int i = 0; i < 2; ++i) {
            DebugPrint(L"lost");
            std::fprintf(stderr, "active=%d", IsDebugLevelActive(702, 31));
        }
    };
    EXPECT_CHILD_PRINTS(useTwice(), StrEq("{loaded}{released}active=0active=0"));
}
