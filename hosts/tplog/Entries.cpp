#include "hosts/tplog/tplog.h"

#include "hosts/tplog/LevelRules.h"
#include "hosts/tplog/MessageText.h"

#include <cerrno>
#include <cstdlib>
#include <exception>
#include <fcntl.h>
#include <mutex>
#include <string>
#include <system_error>
#include <unistd.h>

namespace scenedetect::tplog {
namespace {

// Messages may come until the very end of a process, so that none of these has a destructor of its own.
constinit std::mutex g_outputLock;
constinit int g_output = STDERR_FILENO;
constinit LevelRules g_rules;

void WriteLine(const std::string& line) {
    const std::lock_guard lock(g_outputLock);
    std::size_t done = 0;
    while (g_output != -1 && done < line.size()) {
        const ssize_t written = write(g_output, line.data() + done, line.size() - done);
        if (written < 0 && errno == EINTR)
            continue;
        if (written <= 0)
            break; // nobody could be told
        done += static_cast<std::size_t>(written);
    }
}

int OpenOutput(const std::string& name) {
    if (name.empty() || name == "stderr")
        return STDERR_FILENO;
    if (name == "stdout")
        return STDOUT_FILENO;
    // Appending, several processes can share a file, and each line stays whole.
    const int file = open(name.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0666);
    if (file != -1)
        return file;
    WriteLine("tplog: cannot open TPLOG_FILE=" + name + " (" + std::generic_category().message(errno) +
              "); messages go to stderr\n");
    return STDERR_FILENO;
}

std::string Variable(const char* name) {
    const char* value = std::getenv(name);
    return value ? value : "";
}

// The library's stay in the process.
struct Session {
    Session() {
        const std::string levels = Variable("TPLOG_LEVEL");
        if (!g_rules.Read(levels))
            WriteLine("tplog: TPLOG_LEVEL=" + levels + " is not a list like 702:31,700:1,5\n");
        g_output = OpenOutput(Variable("TPLOG_FILE"));
    }
    ~Session() {
        const std::lock_guard lock(g_outputLock);
        if (g_output > STDERR_FILENO)
            close(g_output);
        g_output = -1;
    }
} g_session;

// Prints what `makeText` gives; a message that finds no memory is dropped.
template <typename MakeText>
void Print(std::uint32_t category, std::uint32_t level, MakeText makeText) noexcept {
    if (!g_rules.Wants(category, level))
        return;
    try {
        WriteLine(MakeLine(category, level, makeText()));
    } catch (const std::exception&) {
    }
}

} // namespace
} // namespace scenedetect::tplog

using namespace scenedetect::tplog;

void tpcore_wPrintf(std::uint32_t category, std::uint32_t level, const char16_t* format, ...) noexcept {
    Print(category, level, [&] { return ExpandText(format); });
}

void tpcore_wvPrintf(std::uint32_t category, std::uint32_t level, const char16_t* format,
                     std::va_list arguments) noexcept {
    Print(category, level, [&] { return ExpandText(format, arguments); });
}

bool tpcore_wPrintf_IsUserLevelActive(std::uint32_t category, std::uint32_t level) noexcept {
    return g_rules.Wants(category, level);
}
