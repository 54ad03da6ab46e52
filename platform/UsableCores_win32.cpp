#include "platform/UsableCores.h"

#include <algorithm>
#include <bit>
#include <windows.h>

namespace scenedetect {

int UsableCores() {
    DWORD_PTR own = 0;
    DWORD_PTR all = 0;
    GetProcessAffinityMask(GetCurrentProcess(), &own, &all);
    return std::max(1, std::popcount(own));
}

} // namespace scenedetect
