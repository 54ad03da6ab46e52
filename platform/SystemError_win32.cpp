#include "platform/SystemError.h"

#include "platform/Text.h"

#include <windows.h>

#include <iterator>

namespace scenedetect {

std::wstring LastSystemErrorText() {
    wchar_t buffer[512];
    const DWORD length = FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr,
                                        GetLastError(), MAKELANGID(LANG_NEUTRAL, SUBLANG_DEFAULT), buffer,
                                        static_cast<DWORD>(std::size(buffer)), nullptr);
    std::wstring text(buffer, length);
    while (!text.empty() && (text.back() == L'\n' || text.back() == L'\r'))
        text.pop_back();
    return text;
}

std::string LastSystemErrorClause() {
    std::string text = Utf8FromWide(LastSystemErrorText());
    if (text.ends_with('.'))
        text.pop_back();
    return text;
}

} // namespace scenedetect
