#include "hosts/kxscenes/SceneHost.h"

#include "hosts/kxscenes/Progress.h"
#include "hosts/shared/DetectionCalls.h"
#include "hosts/shared/FirstError.h"
#include "hosts/shared/HostError.h"
#include "hosts/shared/SceneListCheck.h"

#include <string>
#include <thread>

namespace scenedetect {
namespace {

using namespace std::chrono_literals;

constexpr auto kPollInterval = 10ms;
constexpr auto kProgressInterval = 250ms;
// A scene lies at most two samples before the one at which it is found.
constexpr std::int64_t kLookBack = 2;

} // namespace

SceneHost::SceneHost(const Options& options, std::atomic<bool>& stop, Console& console)
    : m_options(options),
      m_stop(stop),
      m_console(console),
      m_reader(OpenPictures(options.input, stop, console)),
      m_graph(m_reader->Format()),
      m_csv(m_reader->Scale()),
      m_marks(options.marks, options.method) {
    SetUpFilter();
}

void SceneHost::SetUpFilter() {
    RequireComparable(m_reader->Format(), m_options);
    ChooseDetection(m_graph.Scenes(), m_graph.ScenesEx(), m_options);
    if (FAILED(m_graph.Connect()))
        throw HostError(RefusalText(m_options));
}

void SceneHost::Run() {
    BeginDetection(m_graph.Scenes(), m_options);
    if (FAILED(m_graph.Run()))
        throw HostError("the filter graph can't be started");
    m_begin = std::chrono::steady_clock::now();
    m_nextProgress = m_begin + kProgressInterval;

    // Whatever comes, the run is brought to its end.
    FirstError error;
    std::thread streaming([this] { Stream(); });
    error.Attempt([this] { DrainWhileStreaming(); });
    const bool isInterrupted = m_stop && !error;
    if (error)
        m_stop = true;
    streaming.join();
    m_console.ClearProgress();

    if (!error)
        error.Attempt([this] { DrainScenes(); });
    const bool isDrained = !error;
    if (m_streamError)
        error.Attempt([this] { std::rethrow_exception(m_streamError); });
    if (!m_graph.Sink().HasEnded())
        error.Attempt([] { throw HostError("the end of the stream did not pass the filter graph"); });
    m_graph.Scenes().EnableDetection(FALSE);
    m_graph.Stop();
    if (isDrained && !m_options.xmlPath.empty())
        error.Attempt([this] { CheckSceneList(m_options.xmlPath, m_csv.SceneCount()); });

    error.Rethrow();
    if (isInterrupted)
        m_console.Message("stopped after " + std::to_string(m_graph.Sink().SampleCount()) + " frames");
    WarnAboutMarks();
    if (m_options.readTimecode)
        m_console.Message(m_timecode.Text(m_graph.Scenes()));
}

void SceneHost::Stream() noexcept {
    try {
        FeedGraph();
    } catch (...) {
        m_streamError = std::current_exception();
    }
    m_graph.Source().DeliverEndOfStream();
    const std::lock_guard lock(m_mutex);
    m_isStreamOver = true;
    m_changed.notify_one();
}

void SceneHost::FeedGraph() {
    SourceFilter& source = m_graph.Source();
    for (std::int64_t sample = 0; !m_stop; ++sample) {
        const ComRef<PictureSample> held = source.TakeSample();
        if (!held)
            throw HostError("the filter graph gives no sample");
        if (!m_reader->Next(held->picture))
            return;
        RequireComparable(held->picture.format, m_options);
        m_table.Append(held->picture.place);
        if (sample == 0)
            m_timecode.Note(held->picture);
        if (m_marks.IsDue(sample))
            m_graph.Scenes().MarkScene();
        if (source.Deliver(*held) != S_OK)
            throw HostError(m_options.input + ": frame " + std::to_string(held->picture.place.frame) +
                            " is refused by the filter graph");
    }
}

void SceneHost::DrainWhileStreaming() {
    bool isOver = false;
    while (!isOver) {
        {
            std::unique_lock lock(m_mutex);
            isOver = m_changed.wait_for(lock, kPollInterval, [this] { return m_isStreamOver; });
        }
        const std::int64_t done = m_graph.Sink().SampleCount();
        DrainScenes();
        m_table.ForgetBefore(done - kLookBack);
        ShowProgress(done);
    }
}

void SceneHost::DrainScenes() {
    TakeScenes(m_graph.Scenes(), [this](std::int32_t position) {
        const auto place = m_table.Find(position);
        if (!place)
            throw HostError("the filter reports a scene at " + std::to_string(position) +
                            ", where there is no sample");
        m_csv.Add(*place);
    });
    if (!m_csv.HasLines())
        return;
    m_console.ClearProgress();
    m_csv.Flush();
}

void SceneHost::ShowProgress(std::int64_t frames) {
    const auto now = std::chrono::steady_clock::now();
    if (!m_console.IsTerminal() || now < m_nextProgress)
        return;
    m_nextProgress = now + kProgressInterval;
    m_console.ShowProgress(ProgressText(frames, m_reader->Fraction(), now - m_begin));
}

void SceneHost::WarnAboutMarks() {
    const std::string text = UnusedMarksText(m_marks, m_graph.Sink().SampleCount(), m_options.method);
    if (!text.empty())
        m_console.Message(text);
}

} // namespace scenedetect
