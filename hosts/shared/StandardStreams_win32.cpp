#include "hosts/shared/HostError.h"
#include "hosts/shared/StandardStreams.h"
#include "platform/SystemError.h"
#include "platform/Text.h"

#include <windows.h>

#include <algorithm>

namespace scenedetect {

bool IsErrorTerminal() {
    const HANDLE error = GetStdHandle(STD_ERROR_HANDLE);
    DWORD mode = 0;
    return GetConsoleMode(error, &mode) &&
           SetConsoleMode(error, mode | ENABLE_PROCESSED_OUTPUT | ENABLE_VIRTUAL_TERMINAL_PROCESSING);
}

void WriteOutput(std::string_view text) {
    // Past the C library, which would turn every line end into two bytes.
    constexpr std::size_t kMostAtOnce = 1 << 20;
    while (!text.empty()) {
        DWORD written = 0;
        if (!WriteFile(GetStdHandle(STD_OUTPUT_HANDLE), text.data(),
                       static_cast<DWORD>(std::min(text.size(), kMostAtOnce)), &written, nullptr))
            throw HostError("standard output: cannot be written: " + Utf8FromWide(LastSystemErrorText()));
        text.remove_prefix(written);
    }
}

} // namespace scenedetect
