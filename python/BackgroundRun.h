// A run on a thread of its own, whose scenes are taken one at a time.
#pragma once

#include "products/outputs/SceneTable.h"
#include "products/stats/StatsFile.h"
#include "reading/base/Console.h"
#include "running/run/RunListener.h"
#include "running/run/RunProgress.h"
#include "running/run/RunSettings.h"

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <deque>
#include <exception>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

namespace scenedetect {

/// All calls from one thread at a time.
class BackgroundRun {
  public:
    /// Begins at once. `threads` that decoding may take; 0: as many as usable cores.
    BackgroundRun(RunSettings settings, int threads);
    /// Stops the run, and waits for it.
    ~BackgroundRun();
    BackgroundRun(const BackgroundRun&) = delete;
    BackgroundRun& operator=(const BackgroundRun&) = delete;

    enum class Event { Scene, Nothing, End };
    /// Waits for the next scene, but no longer than `wait`. At the end throws what the run failed with.
    [[nodiscard]] Event Next(FoundScene& scene, std::chrono::milliseconds wait);

    /// Since the last call.
    [[nodiscard]] std::vector<std::string> TakeWarnings();
    /// What is known of the input, without scenes; nothing before it is open.
    [[nodiscard]] std::optional<SceneTable> Table();
    /// What "video" judges by; once the input is open.
    [[nodiscard]] DetectionParameters Parameters();
    /// After the last frame, once that is known.
    [[nodiscard]] std::optional<FilePlace> EndPlace();
    /// Of a run that was asked for them and has ended.
    [[nodiscard]] std::vector<StatsRow> TakeFigures();
    [[nodiscard]] const RunProgress& Progress() const { return m_progress; }

  private:
    class Listener;

    void Run();

    const RunSettings m_settings;
    const int m_threads;
    RunProgress m_progress;
    std::atomic<bool> m_stop = false;

    std::mutex m_mutex;
    std::condition_variable m_changed;
    // Guarded by the mutex.
    std::deque<FoundScene> m_scenes;
    std::vector<StatsRow> m_figures;
    std::vector<std::string> m_warnings;
    std::optional<SceneTable> m_table;
    DetectionParameters m_parameters;
    std::optional<FilePlace> m_end;
    std::exception_ptr m_error;
    bool m_hasEnded = false;

    std::thread m_thread; // last: it uses all of the above
};

} // namespace scenedetect
