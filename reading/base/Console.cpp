#include "reading/base/Console.h"

#include "reading/base/StandardStreams.h"

#include <algorithm>
#include <cstdlib>
#include <utility>

namespace scenedetect {
namespace {

constexpr const char* kEraseLine = "\r\x1b[K";
constexpr const char* kEraseRest = "\x1b[K";
constexpr const char* kRed = "\x1b[1;31m";
constexpr const char* kYellow = "\x1b[1;33m";
constexpr const char* kPlain = "\x1b[0m";

bool MayUseColours() {
    const char* noColour = std::getenv("NO_COLOR");
    return IsErrorTerminal() && (!noColour || *noColour == '\0');
}

struct Prefix {
    const char* word;
    const char* colour;
};

Prefix PrefixOf(MessageKind kind) {
    switch (kind) {
    case MessageKind::Error:
        return {"error: ", kRed};
    case MessageKind::Warning:
        return {"warning: ", kYellow};
    case MessageKind::Message:
        break;
    }
    return {"", ""};
}

// Names may have any byte: one that breaks the line, or that a terminal would obey, is not passed on.
std::string OneLine(std::string text) {
    std::ranges::replace_if(
        text, [](unsigned char each) { return each < ' ' || each == 0x7F; }, '?');
    return text;
}

} // namespace

Console::Console(std::string program, Verbosity verbosity)
    : m_program(std::move(program)),
      m_verbosity(verbosity),
      m_isTerminal(IsErrorTerminal()),
      m_hasColours(MayUseColours()) {}

Console::Console(Receiver receiver)
    : m_verbosity(Verbosity::Normal),
      m_isTerminal(false),
      m_hasColours(false),
      m_receiver(std::move(receiver)) {}

void Console::Print(MessageKind kind, const std::string& text) {
    if (m_receiver) {
        m_receiver(kind, OneLine(text));
        return;
    }
    const auto [word, colour] = PrefixOf(kind);
    const std::string shown = m_hasColours && *word != '\0' ? std::string(colour) + word + kPlain : word;
    const std::lock_guard lock(m_mutex);
    WriteError((std::exchange(m_hasProgress, false) ? kEraseLine : "") + m_program + ": " + shown +
               OneLine(text) + '\n');
}

void Console::Error(const std::string& text) {
    Print(MessageKind::Error, text);
}

void Console::Warning(const std::string& text) {
    if (m_verbosity != Verbosity::Quiet)
        Print(MessageKind::Warning, text);
}

void Console::Message(const std::string& text) {
    if (m_verbosity != Verbosity::Quiet)
        Print(MessageKind::Message, text);
}

void Console::Answer(const std::string& text) {
    Print(MessageKind::Message, text);
}

void Console::Detail(const std::string& text) {
    if (m_verbosity == Verbosity::Verbose)
        Print(MessageKind::Message, text);
}

void Console::ShowProgress(const std::string& text) {
    if (!ShowsProgress())
        return;
    // A line that reached the last column would go on in the next one, where it can't be replaced.
    const std::string shown = text.substr(0, ErrorColumns() - 1);
    const std::lock_guard lock(m_mutex);
    // Written over and not erased first, which would flicker.
    WriteError('\r' + shown + kEraseRest);
    m_hasProgress = true;
}

void Console::ClearProgress() {
    const std::lock_guard lock(m_mutex);
    if (!std::exchange(m_hasProgress, false))
        return;
    WriteError(kEraseLine);
}

} // namespace scenedetect
