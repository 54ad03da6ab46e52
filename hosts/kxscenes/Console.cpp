#include "hosts/kxscenes/Console.h"

#include <cstdio>
#include <unistd.h>

namespace scenedetect {
namespace {

// To the line's start, and everything on it erased.
constexpr const char* kEraseLine = "\r\x1b[K";

} // namespace

Console::Console() : m_isTerminal(isatty(STDERR_FILENO) == 1) {}

void Console::Message(const std::string& text) {
    ClearProgress();
    // One call, so that lines of two programs on one pipe do not mix.
    const std::lock_guard lock(m_mutex);
    std::fprintf(stderr, "kxscenes: %s\n", text.c_str());
}

void Console::ShowProgress(const std::string& text) {
    if (!m_isTerminal)
        return;
    const std::lock_guard lock(m_mutex);
    std::fprintf(stderr, "%s%s", kEraseLine, text.c_str());
    std::fflush(stderr);
    m_hasProgress = true;
}

void Console::ClearProgress() {
    const std::lock_guard lock(m_mutex);
    if (!m_hasProgress)
        return;
    std::fputs(kEraseLine, stderr);
    std::fflush(stderr);
    m_hasProgress = false;
}

} // namespace scenedetect
