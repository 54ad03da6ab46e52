#include "support/DebugLog.h"
#include "tests/Testing.h"

#include <windows.h>

TEST(LastErrorText, IsTheSystemsMessage) {
    wchar_t* whole = nullptr;
    ASSERT_NE(FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_ALLOCATE_BUFFER, nullptr,
                             ERROR_FILE_NOT_FOUND, 0, reinterpret_cast<wchar_t*>(&whole), 0, nullptr),
              0u);
    std::wstring text = L"old";
    SetLastError(ERROR_FILE_NOT_FOUND);
    scenedetect::GetLastErrorText(text);
    EXPECT_EQ(text + L"\r\n", std::wstring(whole));
    LocalFree(whole);

    constexpr DWORD kNoError = 0x2FFFFFFF; // a program's own: the system has no words for it
    SetLastError(kNoError);
    scenedetect::GetLastErrorText(text);
    EXPECT_EQ(text, L"");
}
