// What --verbose tells of a run: how the input is read, by which filters, how fast.
#pragma once

#include "reading/base/Console.h"
#include "running/run/RunListener.h"

#include <chrono>
#include <string>

namespace scenedetect {

/// `console` must outlive the object.
class VerboseLog final : public RunListener {
  public:
    explicit VerboseLog(Console& console) : m_console(console) {}

    void Begin(const RunInfo& info) override;
    void End(const RunEnd& end) override;

  private:
    Console& m_console;
    std::string m_input;
    const std::chrono::steady_clock::time_point m_begin = std::chrono::steady_clock::now();
};

} // namespace scenedetect
