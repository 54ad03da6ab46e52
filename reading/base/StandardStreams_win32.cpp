#include "platform/SystemError.h"
#include "platform/Text.h"
#include "reading/base/HostError.h"
#include "reading/base/StandardStreams.h"

#include <windows.h>

#include <algorithm>
#include <new>

namespace scenedetect {
namespace {

constexpr std::size_t kUsualColumns = 80;

// Past the C library, which would turn every line end into two bytes. False with the system's last error.
bool WriteTo(DWORD stream, std::string_view text) {
    const HANDLE handle = GetStdHandle(stream);
    DWORD mode = 0;
    DWORD written = 0;
    if (GetConsoleMode(handle, &mode)) {
        // In the system's own form, whatever code page the console has.
        constexpr std::size_t kMostCharacters = 1 << 13;
        const std::wstring wide = WideFromUtf8(text);
        for (std::wstring_view rest = wide; !rest.empty(); rest.remove_prefix(written))
            if (!WriteConsoleW(handle, rest.data(),
                               static_cast<DWORD>(std::min(rest.size(), kMostCharacters)), &written, nullptr))
                return false;
        return true;
    }
    constexpr std::size_t kMostAtOnce = 1 << 20;
    for (; !text.empty(); text.remove_prefix(written))
        if (!WriteFile(handle, text.data(), static_cast<DWORD>(std::min(text.size(), kMostAtOnce)), &written,
                       nullptr))
            return false;
    return true;
}

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

void WriteError(std::string_view text) noexcept {
    try {
        (void)WriteTo(STD_ERROR_HANDLE, text);
    } catch (const std::bad_alloc&) {
        // Then nothing is said.
    }
}

void WriteOutput(std::string_view text) {
    if (WriteTo(STD_OUTPUT_HANDLE, text))
        return;
    if (IsClosedPipeError(static_cast<int>(GetLastError())))
        throw OutputClosed();
    throw HostError("standard output: cannot be written: " + LastSystemErrorClause());
}

bool IsClosedPipeError(int code) {
    return code == ERROR_NO_DATA || code == ERROR_BROKEN_PIPE || code == ERROR_PIPE_NOT_CONNECTED;
}

} // namespace scenedetect
