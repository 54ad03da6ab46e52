// Warnings about damaged places of the input: one line for the first, one for all of them at the end.
#pragma once

#include "hosts/shared/Console.h"

#include <cstdint>
#include <string>
#include <utility>

namespace scenedetect {

/// One thread at a time. What is said before Begin is kept until then: where no picture can be read at all,
/// one message is enough, and it is not this one.
class DamageLog {
  public:
    DamageLog(Console& console, std::string path) : m_console(console), m_path(std::move(path)) {}

    /// Something that may come often. `what` is the end of a sentence about the file.
    void Report(const std::string& what) {
        if (m_count++ == 0)
            Warn(what);
    }
    /// Something that comes once.
    void Warn(const std::string& what) {
        if (m_hasBegun)
            m_console.Message(m_path + ": " + what);
        else
            m_kept = what;
    }
    void Begin() {
        m_hasBegun = true;
        if (!m_kept.empty())
            Warn(m_kept);
    }
    void Summarize() {
        if (m_count > 1)
            Warn(std::to_string(m_count) + " damaged places in all");
    }

  private:
    Console& m_console;
    const std::string m_path;
    std::int64_t m_count = 0;
    bool m_hasBegun = false;
    std::string m_kept;
};

} // namespace scenedetect
