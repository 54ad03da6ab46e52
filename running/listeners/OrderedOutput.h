// Standard output of several runs at once: what each prints stays together, in the order of the inputs.
#pragma once

#include "reading/base/Console.h"

#include <atomic>
#include <cstddef>
#include <mutex>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace scenedetect {

/// `console`'s progress line makes way. The run whose turn it is prints at once, later ones are kept until
/// those before them are done. Any thread.
class OrderedOutput {
  public:
    /// `header` comes before everything else. `isAll`: nothing else is made of the runs.
    OrderedOutput(Console& console, std::string header, std::size_t runs, bool isAll)
        : m_console(console), m_header(std::move(header)), m_isAll(isAll), m_kept(runs) {}

    /// HostError when printing fails, OutputClosed where that leaves nothing to do; from then on nothing is
    /// printed.
    void Print(std::size_t run, std::string_view text);
    /// The run prints nothing more. HostError when what was kept can't be printed.
    void Close(std::size_t run);
    /// The same for a run that has failed; its error is the one to tell.
    void Abandon(std::size_t run) noexcept;
    [[nodiscard]] bool HasFailed() const { return m_hasFailed; }
    /// Whether nobody reads what is printed any more.
    [[nodiscard]] bool IsClosed() const { return m_isClosed; }

  private:
    struct Kept {
        std::string text;
        bool isClosed = false;
    };

    void Write(std::string_view text);

    Console& m_console;
    std::mutex m_mutex;
    std::string m_header;
    const bool m_isAll;
    std::vector<Kept> m_kept;
    std::size_t m_turn = 0;
    std::atomic<bool> m_hasFailed = false;
    std::atomic<bool> m_isClosed = false;
};

} // namespace scenedetect
