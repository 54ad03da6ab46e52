// What --verbose tells of a run: how the input is read, by which filters, how fast.
#pragma once

#include "reading/base/Console.h"
#include "running/run/RunListener.h"

#include <chrono>
#include <string>
#include <utility>

namespace scenedetect {

/// `console` must outlive the object.
class VerboseLog final : public RunListener {
  public:
    /// `methods` are the words of those that find the scenes.
    VerboseLog(Console& console, std::string methods) : m_console(console), m_methods(std::move(methods)) {}

    void Begin(const RunInfo& info) override;
    void End(const RunEnd& end) override;

  private:
    Console& m_console;
    const std::string m_methods;
    std::string m_input;
    const std::chrono::steady_clock::time_point m_begin = std::chrono::steady_clock::now();
};

} // namespace scenedetect
