#include "support/DebugLog.h"
#include "tests/Testing.h"

#include <cerrno>

TEST(LastErrorText, IsTheSystemsMessage) {
    std::wstring text = L"old";
    errno = ENOENT;
    scenedetect::GetLastErrorText(text);
    EXPECT_EQ(text, L"No such file or directory");
}
