#include "hosts/shared/HostError.h"
#include "hosts/shared/StandardStreams.h"

#include <cerrno>
#include <string>
#include <system_error>
#include <unistd.h>

namespace scenedetect {

bool IsErrorTerminal() {
    return isatty(STDERR_FILENO) == 1;
}

void WriteOutput(std::string_view text) {
    while (!text.empty()) {
        const ssize_t written = write(STDOUT_FILENO, text.data(), text.size());
        if (written < 0 && errno == EINTR)
            continue;
        if (written < 0)
            throw HostError("standard output: cannot be written: " + std::generic_category().message(errno));
        text.remove_prefix(static_cast<std::size_t>(written));
    }
}

} // namespace scenedetect
