#include "support/LogLibrary.h"

#include "platform/Text.h"

namespace scenedetect {

const wchar_t* const kLogLibraryFile = L"libtplog.so";
const char* const kLogPrintName = "tpcore_wPrintf";
const char* const kLogPrintListName = "tpcore_wvPrintf";
const char* const kLogIsLevelActiveName = "tpcore_wPrintf_IsUserLevelActive";

void SendLogText(LogPrint* print, std::uint32_t category, std::uint32_t level, const wchar_t* text) noexcept {
    // A wide character may need two 16-bit ones.
    char16_t text16[2 * kLogTextLength + 1];
    Utf16FromWide(text, text16);
    print(category, level, text16);
}

} // namespace scenedetect
