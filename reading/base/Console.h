// Standard error: messages, a line each, and the progress line when it is a terminal.
#pragma once

#include <functional>
#include <mutex>
#include <string>

namespace scenedetect {

enum class Verbosity {
    Quiet,  ///< errors, and answers to what was asked for
    Normal, ///< warnings, messages and the progress line too
    Verbose ///< details too
};

enum class MessageKind { Error, Warning, Message };

/// Callable from any thread. Failing to write here is nobody's concern. All texts are UTF-8, without a
/// newline; the program's name and ": " go before them.
class Console {
  public:
    /// `program` is the name that begins each line.
    explicit Console(std::string program, Verbosity verbosity = Verbosity::Normal);

    /// Where there is no standard error of one's own: takes each text, without program and kind, on the
    /// thread that has it.
    using Receiver = std::function<void(MessageKind kind, const std::string& text)>;
    explicit Console(Receiver receiver);

    /// Something was not done; "error: " goes before the text.
    void Error(const std::string& text);
    /// Something is not as it should be, and the run goes on; "warning: " goes before the text.
    void Warning(const std::string& text);
    /// How the run went.
    void Message(const std::string& text);
    /// What an option asks for that is no scene.
    void Answer(const std::string& text);
    void Detail(const std::string& text);

    [[nodiscard]] bool IsVerbose() const { return m_verbosity == Verbosity::Verbose; }
    [[nodiscard]] bool ShowsProgress() const { return m_isTerminal && m_verbosity != Verbosity::Quiet; }
    /// Replaces the progress line, as much of it as the terminal is wide; nothing where none is shown.
    void ShowProgress(const std::string& text);
    /// Takes the progress line away, before something else is printed.
    void ClearProgress();

  private:
    void Print(MessageKind kind, const std::string& text);

    std::mutex m_mutex;
    const std::string m_program;
    const Verbosity m_verbosity;
    const bool m_isTerminal;
    const bool m_hasColours;
    const Receiver m_receiver; // in place of standard error
    bool m_hasProgress = false;
};

} // namespace scenedetect
