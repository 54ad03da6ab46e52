// Warnings about damaged places of the input: a line for each of the first few, one for all of them at the
// end.
#pragma once

#include "reading/base/Console.h"
#include "reading/readers/Irregularity.h"

#include <cstdint>
#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace scenedetect {

/// One thread at a time. What is said before Begin is kept until then: where no picture can be read at all,
/// one message is enough, and it is not one of these.
class DamageLog {
  public:
    using Listener = std::function<void(const Irregularity&)>;

    /// `listener` is told of every irregularity that has a record, whether it gets a line or not.
    DamageLog(Console& console, std::string path, Listener listener = {})
        : m_console(console), m_path(std::move(path)), m_listener(std::move(listener)) {}

    /// Something that may come often. `what` is the end of a sentence about the file.
    void Report(const std::string& what) {
        if (++m_count <= kMostLines)
            Warn(what);
    }
    void Report(const Irregularity& irregularity) {
        if (m_listener)
            m_listener(irregularity);
        Report(IrregularityText(irregularity));
    }
    /// Something that comes once.
    void Warn(const std::string& what) {
        if (m_hasBegun)
            m_console.Warning(m_path + ": " + what);
        else
            m_kept.push_back(what);
    }
    void Begin() {
        m_hasBegun = true;
        for (const std::string& what : std::exchange(m_kept, {}))
            Warn(what);
    }
    /// Once, at the end.
    void Summarize() {
        if (std::exchange(m_isSummarized, true) || m_count <= kMostLines)
            return;
        Warn(std::to_string(m_count) + " irregularities in all, of which the first " +
             std::to_string(kMostLines) + " were told");
    }

  private:
    // As many as leave the scenes in sight on a terminal.
    static constexpr std::int64_t kMostLines = 10;

    Console& m_console;
    const std::string m_path;
    const Listener m_listener;
    std::int64_t m_count = 0;
    bool m_hasBegun = false;
    bool m_isSummarized = false;
    std::vector<std::string> m_kept;
};

} // namespace scenedetect
