// A run from the opened file to the last scene: the streaming thread feeds the graph, this one drains it.
#pragma once

#include "hosts/kxscenes/FilterGraph.h"
#include "hosts/kxscenes/OpenPictures.h"
#include "hosts/kxscenes/Options.h"
#include "hosts/shared/Console.h"
#include "hosts/shared/MarkSchedule.h"
#include "hosts/shared/SampleTable.h"
#include "hosts/shared/SceneCsv.h"
#include "hosts/shared/TimecodeReport.h"

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <exception>
#include <memory>
#include <mutex>

namespace scenedetect {

/// `options`, `stop` and `console` must outlive the object. Setting `stop` ends the run at the next picture.
class SceneHost {
  public:
    /// Opens the input and sets the graph up. HostError when either fails.
    SceneHost(const Options& options, std::atomic<bool>& stop, Console& console);

    /// Runs to the end of the input; prints scenes while it goes. HostError when reading or writing fails:
    /// what was found until then has been printed and written.
    void Run();

  private:
    void SetUpFilter();
    void Stream() noexcept;
    void FeedGraph();
    void DrainWhileStreaming();
    void DrainScenes();
    void ShowProgress(std::int64_t frames);
    void WarnAboutMarks();

    const Options& m_options;
    std::atomic<bool>& m_stop;
    Console& m_console;
    const std::unique_ptr<PictureReader> m_reader;
    FilterGraph m_graph;
    SampleTable m_table;
    SceneCsv m_csv;
    MarkSchedule m_marks;
    TimecodeReport m_timecode;

    std::mutex m_mutex;
    std::condition_variable m_changed;
    bool m_isStreamOver = false;      // guarded by m_mutex
    std::exception_ptr m_streamError; // of the streaming thread, until that is over
    std::chrono::steady_clock::time_point m_begin;
    std::chrono::steady_clock::time_point m_nextProgress;
};

} // namespace scenedetect
