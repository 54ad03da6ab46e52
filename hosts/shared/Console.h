// Standard error: messages, a line each, and the progress line when it is a terminal.
#pragma once

#include <mutex>
#include <string>

namespace scenedetect {

/// Callable from any thread. Failing to write here is nobody's concern.
class Console {
  public:
    /// `program` is the name that begins each message.
    explicit Console(std::string program);

    /// Prints the program's name, ": " and the text (UTF-8, without a newline).
    void Message(const std::string& text);

    [[nodiscard]] bool IsTerminal() const { return m_isTerminal; }
    /// Replaces the progress line; nothing when standard error is not a terminal.
    void ShowProgress(const std::string& text);
    /// Takes the progress line away, before something else is printed.
    void ClearProgress();

  private:
    std::mutex m_mutex;
    const std::string m_program;
    const bool m_isTerminal;
    bool m_hasProgress = false;
};

} // namespace scenedetect
