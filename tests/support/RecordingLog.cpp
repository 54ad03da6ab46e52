// A logging library that prints on stderr all that happens to it. It has no static objects with destructors,
// so that it can be called at any time.
#include "platform/Text.h"

#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <string>
#include <thread>
#include <unistd.h>

namespace {

void Record(const std::string& event) {
    [[maybe_unused]] const ssize_t written = write(STDERR_FILENO, event.data(), event.size());
}

[[gnu::constructor]] void Loaded() {
    Record("{loaded}");
}
[[gnu::destructor]] void Released() {
    Record("{released}");
}

} // namespace

#define ENTRY extern "C"

ENTRY void tpcore_wPrintf(std::uint32_t category, std::uint32_t level, const char16_t* format, ...) {
    if (category == 0)
        return; // for those who count allocations
    // Category 1 is for those who want the library to be in use most of the time.
    for (int i = 0; category == 1 && i < 1000; ++i)
        std::this_thread::yield();
    // No std::to_string: its table is a symbol of the kind that keeps a library loaded for ever.
    char head[32];
    std::snprintf(head, sizeof(head), "{%u/%u ", category, level);
    Record(head + scenedetect::Utf8FromUtf16(format) + "}");
}

#ifdef WITH_LIST_ENTRY
ENTRY void tpcore_wvPrintf(std::uint32_t, std::uint32_t, const char16_t*, std::va_list) {
    Record("{list form}");
}
#endif

ENTRY bool tpcore_wPrintf_IsUserLevelActive(std::uint32_t category, std::uint32_t level) {
    return category == 702 && level == 31;
}
