#include "support/LogLibrary.h"

namespace scenedetect {

const wchar_t* const kLogLibraryFile = L"tplog.dll";
// C++ names as the library's compiler decorates them, its wide character being an unsigned short.
const char* const kLogPrintName = "?wPrintf@tpcore@@YAXIIPEBGZZ";
const char* const kLogPrintListName = "?wvPrintf@tpcore@@YAXIIPEBGPEAD@Z";
const char* const kLogIsLevelActiveName = "?wPrintf_IsUserLevelActive@tpcore@@YA_NII@Z";

void SendLogText(LogPrint* print, std::uint32_t category, std::uint32_t level, const wchar_t* text) noexcept {
    static_assert(sizeof(wchar_t) == sizeof(char16_t));
    print(category, level, reinterpret_cast<const char16_t*>(text));
}

} // namespace scenedetect
