#include "reading/base/HostError.h"
#include "reading/base/StandardStreams.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <sys/ioctl.h>
#include <system_error>
#include <unistd.h>

namespace scenedetect {
namespace {

constexpr std::size_t kUsualColumns = 80;

} // namespace

bool IsErrorTerminal() {
    const char* kind = std::getenv("TERM");
    return isatty(STDERR_FILENO) == 1 && kind && kind != std::string_view("dumb");
}

std::size_t ErrorColumns() {
    winsize size{};
    const bool isKnown = ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 1;
    return isKnown ? size.ws_col : kUsualColumns;
}

void WriteError(std::string_view text) noexcept {
    std::fwrite(text.data(), 1, text.size(), stderr);
    std::fflush(stderr);
}

void WriteOutput(std::string_view text) {
    while (!text.empty()) {
        const ssize_t written = write(STDOUT_FILENO, text.data(), text.size());
        if (written < 0 && errno == EINTR)
            continue;
        if (written < 0 && IsClosedPipeError(errno))
            throw OutputClosed();
        if (written < 0)
            throw HostError("standard output: cannot be written: " + std::generic_category().message(errno));
        text.remove_prefix(static_cast<std::size_t>(written));
    }
}

bool IsClosedPipeError(int code) {
    return code == EPIPE;
}

} // namespace scenedetect
