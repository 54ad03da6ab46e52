#include "hosts/cli/ConfigFile.h"

#include <cstdlib>

namespace scenedetect {

std::filesystem::path UserConfigFolder() {
    const wchar_t* value = _wgetenv(L"APPDATA");
    return value ? value : L"";
}

} // namespace scenedetect
