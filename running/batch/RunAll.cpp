#include "running/batch/RunAll.h"

#include "platform/UsableCores.h"
#include "reading/base/FileFacts.h"
#include "reading/base/HostError.h"
#include "reading/base/ListText.h"
#include "running/batch/Progress.h"
#include "running/listeners/Listeners.h"
#include "running/listeners/OrderedOutput.h"
#include "running/listeners/ScenePrinter.h"
#include "running/listeners/VerboseLog.h"
#include "running/run/SceneRun.h"

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <deque>
#include <exception>
#include <mutex>
#include <optional>
#include <system_error>
#include <thread>

namespace scenedetect {
namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

constexpr auto kProgressInterval = 250ms;

SceneCsv::Columns ColumnsFor(const std::vector<RunPlan>& plans) {
    return {plans.size() > 1, plans.front().run.detection.Words().size() > 1};
}

class Jobs {
  public:
    Jobs(const std::vector<RunPlan>& plans, int jobs, OutputClaims& claims, std::atomic<bool>& stop,
         Console& console)
        : m_plans(plans),
          m_claims(claims),
          m_workers(std::min<std::size_t>(static_cast<std::size_t>(jobs), plans.size())),
          m_threads(m_workers == 1 ? 0 : std::max(1, UsableCores() / static_cast<int>(m_workers))),
          m_stop(stop),
          m_console(console),
          m_columns(ColumnsFor(plans)),
          m_output(console, SceneCsv::Header(m_columns), plans.size(),
                   std::ranges::all_of(plans, &RunPlan::OnlyPrints)),
          m_progress(plans.size()) {}

    BatchEnding Run();

  private:
    struct Total {
        BatchEnding ending = BatchEnding::Complete;
        std::size_t done = 0;
        std::size_t partial = 0;
        std::size_t failed = 0;
        std::int64_t scenes = 0;
        std::vector<std::size_t> failures; // inputs

        [[nodiscard]] std::size_t Ended() const { return done + partial + failed; }
    };

    struct Result {
        bool hasBegun = false; // the input is open
        BatchEnding ending = BatchEnding::Complete;
        std::int64_t scenes = 0;
    };

    void Work();
    [[nodiscard]] bool HasNext() const { return m_next < m_plans.size() || !m_returned.empty(); }
    [[nodiscard]] std::size_t TakeNext();
    [[nodiscard]] bool RunOne(std::size_t index);
    void ReadOne(std::size_t index, Result& result);
    void TellOfEnding(const RunPlan& plan, RunEnding ending, const SceneRun& run);
    void Tell(const std::string& input, const std::exception_ptr& failure) noexcept;
    void ShowProgress();
    [[nodiscard]] std::int64_t FrameCount() const;
    void Summarize();

    const std::vector<RunPlan>& m_plans;
    OutputClaims& m_claims;
    const std::size_t m_workers;
    const int m_threads; // for each; alone, a reader knows best how many serve it
    std::atomic<bool>& m_stop;
    Console& m_console;
    const SceneCsv::Columns m_columns;
    OrderedOutput m_output;
    std::deque<RunProgress> m_progress;
    const Clock::time_point m_begin = Clock::now();

    std::mutex m_mutex;
    std::condition_variable m_changed;
    // Guarded by the mutex.
    std::size_t m_next = 0;
    std::vector<std::size_t> m_returned; // to be run after all
    std::size_t m_working = 0;
    std::size_t m_surplus = 0; // of the threads that work
    Total m_total;
};

BatchEnding Jobs::Run() {
    m_working = m_workers;
    // So that noting a run takes no memory.
    m_returned.reserve(m_plans.size());
    m_total.failures.reserve(m_plans.size());
    std::vector<std::thread> threads;
    threads.reserve(m_workers);
    std::unique_lock starting(m_mutex); // none works before all are there
    try {
        while (threads.size() < m_workers)
            threads.emplace_back([this] { Work(); });
    } catch (const std::system_error&) {
        // The system has no more of them. Half of those that it has make room for the others.
        m_working -= m_workers - std::max<std::size_t>(threads.size(), 1);
        m_surplus = threads.size() / 2;
    }
    starting.unlock();
    if (threads.empty())
        Work();
    {
        std::unique_lock lock(m_mutex);
        while (!m_changed.wait_for(lock, kProgressInterval, [this] { return m_working == 0; })) {
            lock.unlock();
            ShowProgress();
            lock.lock();
        }
    }
    for (std::thread& thread : threads)
        thread.join();
    m_console.ClearProgress();
    if (m_plans.size() > 1)
        Summarize();
    return m_stop && HasNext() ? std::max(m_total.ending, BatchEnding::Stopped) : m_total.ending;
}

void Jobs::Work() {
    std::unique_lock lock(m_mutex);
    bool goesOn = m_surplus == 0;
    if (!goesOn)
        --m_surplus;
    while (goesOn && HasNext() && !m_stop) {
        const std::size_t index = TakeNext();
        lock.unlock();
        goesOn = RunOne(index);
        lock.lock();
    }
    --m_working;
    m_changed.notify_one();
}

std::size_t Jobs::TakeNext() {
    if (m_returned.empty())
        return m_next++;
    const std::size_t index = m_returned.back();
    m_returned.pop_back();
    return index;
}

// False when there is not the memory for as many runs at a time: this one is for another thread, later.
bool Jobs::RunOne(std::size_t index) {
    Result result;
    std::exception_ptr failure;
    bool isShortOfMemory = false;
    try {
        ReadOne(index, result);
        m_output.Close(index);
    } catch (const OutputClosed&) {
        m_stop = true;
        result.ending = BatchEnding::OutputClosed;
    } catch (const std::bad_alloc&) {
        isShortOfMemory = true;
        failure = std::current_exception();
    } catch (...) {
        failure = std::current_exception();
    }
    const std::lock_guard lock(m_mutex);
    if (isShortOfMemory && !result.hasBegun && m_working > 1) {
        m_returned.push_back(index);
        return false;
    }
    if (failure)
        result.ending = BatchEnding::Failed;
    if (result.ending > BatchEnding::Stopped)
        m_output.Abandon(index);
    m_progress[index].fraction = 1;
    m_total.scenes += result.scenes;
    m_total.ending = std::max(m_total.ending, result.ending);
    if (!failure) {
        ++(result.ending == BatchEnding::Complete ? m_total.done : m_total.partial);
        return true;
    }
    ++m_total.failed;
    m_total.failures.push_back(index);
    // What prints nothing any more need not go on, and one line about it is enough.
    if (!m_output.HasFailed() || !m_stop.exchange(true))
        Tell(m_plans[index].run.input, failure);
    return true;
}

void Jobs::ReadOne(std::size_t index, Result& result) {
    const RunPlan& plan = m_plans[index];
    if (!plan.fault.empty())
        throw HostError(plan.run.input + ": " + plan.fault);
    const Reading reading{m_stop, m_console, m_threads};
    SceneRun::Listeners listeners =
        MakeListeners(plan.run, plan.outputs, m_claims, m_console, m_progress[index]);
    if (plan.outputs.printsScenes)
        listeners.push_back(std::make_unique<ScenePrinter>(m_output, index, m_columns));
    if (m_console.IsVerbose())
        listeners.push_back(std::make_unique<VerboseLog>(m_console));
    std::optional<SceneRun> run;
    FirstError error;
    error.Attempt([&] { run.emplace(plan.run, reading, m_progress[index], std::move(listeners)); });
    if (error && m_stop) {
        m_console.Message(plan.run.input + ": stopped before the first picture");
        result.ending = BatchEnding::Stopped;
        return;
    }
    error.Rethrow();
    result.hasBegun = true;
    RunEnding ending = RunEnding::Complete;
    error.Attempt([&] { ending = run->Run(); });
    result.scenes = run->SceneCount();
    error.Rethrow();
    TellOfEnding(plan, ending, *run);
    result.ending = ending == RunEnding::Complete   ? BatchEnding::Complete
                    : ending == RunEnding::BrokeOff ? BatchEnding::BrokeOff
                                                    : BatchEnding::Stopped;
}

void Jobs::TellOfEnding(const RunPlan& plan, RunEnding ending, const SceneRun& run) {
    if (ending == RunEnding::Complete || m_output.IsClosed())
        return;
    const std::string name = m_plans.size() > 1 ? plan.run.input + ": " : "";
    const std::string frames = std::to_string(run.SampleCount()) + " frames";
    if (ending == RunEnding::Stopped)
        m_console.Message(name + "stopped after " + frames);
    std::string partial;
    for (const std::string& output : run.Outputs().written)
        AppendToList(partial, ", ", output);
    if (!partial.empty())
        m_console.Warning(name + "of the first " + frames + " only: " + partial);
}

void Jobs::Tell(const std::string& input, const std::exception_ptr& failure) noexcept {
    try {
        std::rethrow_exception(failure);
    } catch (const std::exception& thrown) {
        try {
            const std::string error = ErrorText(thrown);
            const bool isTold =
                m_plans.size() == 1 || m_output.HasFailed() || error.find(input) != std::string::npos;
            m_console.Error(isTold ? error : input + ": " + error);
        } catch (const std::bad_alloc&) { // the summary names the input
        }
    }
}

std::int64_t Jobs::FrameCount() const {
    std::int64_t frames = 0;
    for (const RunProgress& each : m_progress)
        frames += each.frames.load(std::memory_order_relaxed);
    return frames;
}

void Jobs::ShowProgress() {
    if (!m_console.ShowsProgress())
        return;
    // Each file counts by its size, where that is known.
    double done = 0;
    double all = 0;
    std::string files;
    if (const char* products = m_progress[0].products; products && m_plans.size() == 1) {
        m_console.ShowProgress(
            ProductsText(FrameCount(), m_progress[0].made, m_progress[0].wanted, products));
        return;
    }
    if (m_plans.size() == 1) {
        done = m_progress[0].fraction;
        all = 1;
    } else {
        for (std::size_t i = 0; i < m_plans.size(); ++i) {
            const auto size = static_cast<double>(FactsOf(m_plans[i].run.input).size);
            done += size * std::max(0.0, m_progress[i].fraction.load(std::memory_order_relaxed));
            all += size;
        }
        const std::lock_guard lock(m_mutex);
        files = std::to_string(m_total.Ended()) + '/' + std::to_string(m_plans.size()) + " files  ";
    }
    m_console.ShowProgress(files +
                           ProgressText(FrameCount(), all > 0 ? done / all : -1, Clock::now() - m_begin));
}

void Jobs::Summarize() {
    char seconds[32];
    std::snprintf(seconds, sizeof seconds, "%.1f s",
                  std::chrono::duration<double>(Clock::now() - m_begin).count());
    const std::size_t notBegun = m_plans.size() - m_total.Ended();
    m_console.Message(std::to_string(m_plans.size()) + " files: " + std::to_string(m_total.done) + " done, " +
                      (m_total.partial != 0 ? std::to_string(m_total.partial) + " partial, " : "") +
                      std::to_string(m_total.failed) + " failed" +
                      (notBegun != 0 ? ", " + std::to_string(notBegun) + " not begun" : "") + "; " +
                      std::to_string(m_total.scenes) + " scenes in " + std::to_string(FrameCount()) +
                      " frames, " + seconds);
    for (const std::size_t index : m_total.failures)
        m_console.Message("failed: " + m_plans[index].run.input);
}

} // namespace

BatchEnding RunAll(const std::vector<RunPlan>& plans, int jobs, OutputClaims& claims, std::atomic<bool>& stop,
                   Console& console) {
    return Jobs(plans, jobs, claims, stop, console).Run();
}

} // namespace scenedetect
