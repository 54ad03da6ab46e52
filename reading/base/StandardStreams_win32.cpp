#include "platform/SystemError.h"
#include "platform/Text.h"
#include "reading/base/HostError.h"
#include "reading/base/StandardStreams.h"

#include <windows.h>

#include <algorithm>

namespace scenedetect {
namespace {

constexpr std::size_t kUsualColumns = 80;

} // namespace

bool IsErrorTerminal() {
    const HANDLE error = GetStdHandle(STD_ERROR_HANDLE);
    DWORD mode = 0;
    return GetConsoleMode(error, &mode) &&
           SetConsoleMode(error, mode | ENABLE_PROCESSED_OUTPUT | ENABLE_VIRTUAL_TERMINAL_PROCESSING);
}

std::size_t ErrorColumns() {
    CONSOLE_SCREEN_BUFFER_INFO buffer{};
    if (!GetConsoleScreenBufferInfo(GetStdHandle(STD_ERROR_HANDLE), &buffer))
        return kUsualColumns;
    const int columns = buffer.srWindow.Right - buffer.srWindow.Left + 1;
    return columns > 1 ? static_cast<std::size_t>(columns) : kUsualColumns;
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
