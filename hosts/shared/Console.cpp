#include "hosts/shared/Console.h"

#include "hosts/shared/StandardStreams.h"

#include <cstdio>
#include <utility>

namespace scenedetect {
namespace {

// To the line's start, and everything on it erased.
constexpr const char* kEraseLine = "\r\x1b[K";

} // namespace

Console::Console(std::string program) : m_program(std::move(program)), m_isTerminal(IsErrorTerminal()) {}

void Console::Message(const std::string& text) {
    ClearProgress();
    const std::string line = m_program + ": " + text + '\n';
    // One call, so that lines of two programs on one pipe do not mix.
    const std::lock_guard lock(m_mutex);
    std::fwrite(line.data(), 1, line.size(), stderr);
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
