#include "python/BackgroundRun.h"

#include "reading/ffmpeg/FfmpegLog.h"
#include "running/listeners/SceneTabler.h"
#include "running/run/SceneRun.h"

#include <utility>

namespace scenedetect {

class BackgroundRun::Listener final : public RunListener {
  public:
    explicit Listener(BackgroundRun& run) : m_run(run) {}

    void Begin(const RunInfo& info) override {
        const std::lock_guard lock(m_run.m_mutex);
        m_run.m_table = TableOf(info);
        m_run.m_parameters = info.parameters;
    }
    void Scene(const FoundScene& scene) override {
        const std::lock_guard lock(m_run.m_mutex);
        m_run.m_scenes.push_back(scene);
        m_run.m_changed.notify_one();
    }
    void Figures(const FilePlace& place, const KxFrameFigures& figures,
                 const KxFrameDistances& distances) override {
        const std::lock_guard lock(m_run.m_mutex);
        m_run.m_figures.push_back({place, figures, distances});
    }
    void End(const RunEnd& end) override {
        const std::lock_guard lock(m_run.m_mutex);
        EndTable(*m_run.m_table, end);
        m_run.m_end = end.place;
    }

  private:
    BackgroundRun& m_run;
};

BackgroundRun::BackgroundRun(RunSettings settings, int threads)
    : m_settings(std::move(settings)), m_threads(threads), m_thread([this] { Run(); }) {}

BackgroundRun::~BackgroundRun() {
    m_stop = true;
    m_thread.join();
}

void BackgroundRun::Run() {
    std::exception_ptr error;
    try {
        CaptureFfmpegLog();
        Console console([this](MessageKind kind, const std::string& text) {
            if (kind == MessageKind::Message)
                return;
            const std::lock_guard lock(m_mutex);
            m_warnings.push_back(text);
        });
        const Reading reading{m_stop, console, m_threads};
        SceneRun::Listeners listeners;
        listeners.push_back(std::make_unique<Listener>(*this));
        SceneRun run(m_settings, reading, m_progress, std::move(listeners));
        (void)run.Run();
    } catch (...) {
        error = std::current_exception();
    }
    const std::lock_guard lock(m_mutex);
    m_error = error;
    m_hasEnded = true;
    m_changed.notify_one();
}

BackgroundRun::Event BackgroundRun::Next(FoundScene& scene, std::chrono::milliseconds wait) {
    std::unique_lock lock(m_mutex);
    m_changed.wait_for(lock, wait, [this] { return !m_scenes.empty() || m_hasEnded; });
    if (!m_scenes.empty()) {
        scene = std::move(m_scenes.front());
        m_scenes.pop_front();
        return Event::Scene;
    }
    if (!m_hasEnded)
        return Event::Nothing;
    if (m_error)
        std::rethrow_exception(std::exchange(m_error, nullptr));
    return Event::End;
}

std::vector<std::string> BackgroundRun::TakeWarnings() {
    const std::lock_guard lock(m_mutex);
    return std::exchange(m_warnings, {});
}

std::optional<SceneTable> BackgroundRun::Table() {
    const std::lock_guard lock(m_mutex);
    return m_table;
}

DetectionParameters BackgroundRun::Parameters() {
    const std::lock_guard lock(m_mutex);
    return m_parameters;
}

std::optional<FilePlace> BackgroundRun::EndPlace() {
    const std::lock_guard lock(m_mutex);
    return m_end;
}

std::vector<StatsRow> BackgroundRun::TakeFigures() {
    const std::lock_guard lock(m_mutex);
    return std::exchange(m_figures, {});
}

} // namespace scenedetect
