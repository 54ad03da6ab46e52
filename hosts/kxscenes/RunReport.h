// What --verbose tells of a run: how the input is read, by which filters, how fast.
#pragma once

#include "hosts/kxscenes/RunListener.h"
#include "hosts/kxscenes/RunPlan.h"
#include "hosts/shared/Console.h"

#include <chrono>

namespace scenedetect {

/// `console` and `plan` must outlive the object.
class RunReport final : public RunListener {
  public:
    RunReport(Console& console, const RunPlan& plan) : m_console(console), m_plan(plan) {}

    void Begin(const RunFacts& facts) override;
    void End(const RunEnd& end) override;

  private:
    Console& m_console;
    const RunPlan& m_plan;
    const std::chrono::steady_clock::time_point m_begin = std::chrono::steady_clock::now();
};

} // namespace scenedetect
