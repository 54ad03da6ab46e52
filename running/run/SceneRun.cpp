#include "running/run/SceneRun.h"

#include "platform/Text.h"
#include "reading/base/HostError.h"
#include "running/detection/DetectionCalls.h"
#include "running/detection/SceneListCheck.h"
#include "scenes/SceneListFile.h"

#include <array>
#include <limits>
#include <span>
#include <string>
#include <utility>

namespace scenedetect {
namespace {

std::vector<std::string> MethodWordsOf(const DetectionSettings& detection) {
    std::vector<std::string> words;
    for (const KxDetectionMethod method : detection.methods)
        words.push_back(MethodWord(method));
    return words;
}

} // namespace

SceneRun::SceneRun(const RunSettings& settings, const Reading& reading, RunProgress& progress,
                   Listeners listeners)
    : m_settings(settings),
      m_reading(reading),
      m_progress(progress),
      m_listeners(std::move(listeners)),
      m_reader(OpenPictures(settings.input, reading,
                            [this](const Irregularity& each) { m_irregularities.push_back(each); })),
      m_graph(m_reader->Format(), settings.detection.methods.size()),
      m_merge(MethodWordsOf(settings.detection)),
      m_range(settings.range, m_reader->Scale()) {
    SetUpFilters();
}

void SceneRun::SetUpFilters() {
    for (std::size_t i = 0; i < m_settings.detection.methods.size(); ++i) {
        const KxDetectionMethod method = m_settings.detection.methods[i];
        RequireComparable(m_reader->Format(), method, m_settings.input);
        ChooseDetection(m_graph.Scenes(i), m_graph.ScenesEx(i), method, m_settings.detection);
        m_detections.push_back({MarkSchedule(m_settings.detection.marks, method), {}});
        if (method != KxMethodVideo)
            continue;
        ApplyParameters(m_graph.Tuning(i), m_settings.detection.parameters);
        if (m_settings.wantsFigures) {
            m_measuring = i;
            Require(m_graph.Tuning(i).EnableFrameFigures(TRUE), "the filter does not hand out its figures");
        }
    }
    if (const auto refusing = m_graph.Connect())
        throw HostError(RefusalText(m_settings.detection.methods[*refusing], m_settings.input));
}

// Each of those that are left, whatever becomes of another.
template <typename Call>
void SceneRun::Tell(Call call) {
    FirstError error;
    for (auto& listener : m_listeners) {
        FirstError own;
        own.Attempt([&] { call(*listener); });
        if (own)
            listener.reset();
        error.Attempt([&] { own.Rethrow(); });
    }
    std::erase(m_listeners, nullptr);
    error.Rethrow();
}

void SceneRun::Run() {
    for (std::size_t i = 0; i < m_settings.detection.methods.size(); ++i)
        BeginDetection(m_graph.Scenes(i), m_settings.xmlPaths[i], m_settings.input);
    if (FAILED(m_graph.Run()))
        throw HostError("the filter graph can't be started");

    // Whatever comes, the run is brought to its end.
    FirstError error;
    error.Attempt([this] { FeedGraph(); });
    const bool isInterrupted = m_reading.stop && !error;
    m_graph.Source().DeliverEndOfStream();
    error.Attempt([this] { DrainScenes(std::numeric_limits<std::int64_t>::max()); });
    if (!m_graph.Sink().HasEnded())
        error.Attempt([] { throw HostError("the end of the stream did not pass the filter graph"); });
    for (std::size_t i = 0; i < m_settings.detection.methods.size(); ++i)
        m_graph.Scenes(i).EnableDetection(FALSE);
    m_graph.Stop();
    error.Attempt([this] { DrainFigures(); });
    error.Attempt([this] { FinishSceneLists(); });
    error.Attempt([&] {
        // Of nothing there is nothing to write.
        const RunEnd end{m_samples, m_end, isInterrupted, m_range.HasEnded()};
        if (m_samples != 0)
            Tell([&end](RunListener& listener) { listener.End(end); });
    });

    if (m_samples == 0 && !isInterrupted)
        error.Attempt([this] {
            throw HostError(m_settings.input + ": no frame lies in the part that was asked for" +
                            (m_range.HasEnded() ? "" : "; it has " + std::to_string(m_skipped)));
        });
    error.Rethrow();
    if (isInterrupted)
        m_reading.console.Message(Named("stopped after " + std::to_string(m_samples) + " frames"));
    WarnAboutMarks();
    if (m_settings.detection.readTimecode)
        m_reading.console.Answer(Named(m_timecode.Text(m_graph.Scenes(0))));
}

std::string SceneRun::Named(const std::string& text) const {
    return m_settings.isOneOfMany ? m_settings.input + ": " + text : text;
}

void SceneRun::Begin(const FilePlace& first) {
    if (std::exchange(m_hasBegun, true))
        return;
    const RunInfo info{
        m_settings.input,       m_reader->Scale(), m_reader->Format(), m_reader->Info(), first,
        m_reader->Description()};
    Tell([&info](RunListener& listener) { listener.Begin(info); });
}

// What the reader finds wrong on its way is told here, where a listener may throw.
bool SceneRun::ReadPicture(Picture& picture) {
    const bool isThere = m_reader->Next(picture);
    Begin(picture.place);
    for (const Irregularity& each : std::exchange(m_irregularities, {}))
        Tell([&each](RunListener& listener) { listener.Irregular(each); });
    return isThere;
}

void SceneRun::FeedGraph() {
    SourceFilter& source = m_graph.Source();
    while (!m_reading.stop) {
        ComRef<PictureSample> held = source.TakeSample();
        if (!held)
            throw HostError("the filter graph gives no sample");
        if (!ReadPicture(held->picture) || m_range.IsOver(held->picture.place))
            return;
        if (!m_range.HasBegun(held->picture.place)) {
            ++m_skipped;
            continue;
        }
        for (std::size_t i = 0; i < m_detections.size(); ++i) {
            RequireComparable(held->picture.format, m_settings.detection.methods[i], m_settings.input);
            if (m_detections[i].marks.IsDue(m_skipped + m_samples))
                m_graph.Scenes(i).MarkScene();
        }
        if (m_samples == 0)
            m_timecode.Note(held->picture);
        if (source.Deliver(*held) != S_OK)
            throw HostError(m_settings.input + ": frame " + std::to_string(held->picture.place.frame) +
                            " is refused by the filter graph");
        if (m_measuring)
            m_measured.Append(held->picture.place);
        m_end = PlaceAfter(held->picture.place, m_reader->Scale());
        m_recent.push_back(std::move(held));
        ++m_samples;
        DrainScenes(m_samples - RunListener::kLookBack);
        DrainFigures();
        Tell([this](RunListener& listener) { listener.Passed(*m_recent.back(), m_samples - 1); });
        if (std::ssize(m_recent) > RunListener::kLookBack)
            m_recent.pop_front();
        m_progress.frames.store(m_samples, std::memory_order_relaxed);
        m_progress.fraction.store(m_reader->Fraction(), std::memory_order_relaxed);
    }
}

void SceneRun::DrainScenes(std::int64_t settledBefore) {
    for (std::size_t i = 0; i < m_detections.size(); ++i)
        TakeScenes(m_graph.Scenes(i), [&](std::int32_t position) {
            m_detections[i].positions.push_back(static_cast<std::int32_t>(m_skipped + position));
            m_merge.Add(i, position);
        });
    m_merge.Take(settledBefore, [this](std::int64_t position, const std::string& method) {
        const std::int64_t first = m_samples - std::ssize(m_recent);
        if (position < first || position >= m_samples)
            throw HostError("the filter reports a scene at " + std::to_string(position) +
                            ", where there is no sample");
        const Picture& picture = m_recent[static_cast<std::size_t>(position - first)]->picture;
        const FoundScene scene{++m_sceneCount, position, m_skipped + position,
                               picture.place,  method,   &picture};
        Tell([&scene](RunListener& listener) { listener.Scene(scene); });
    });
}

void SceneRun::DrainFigures() {
    if (!m_measuring)
        return;
    std::array<KxFrameFigures, 16> figures{};
    ULONG taken = 0;
    while (m_graph.Tuning(*m_measuring).GetFrameFigures(figures.size(), figures.data(), &taken) == S_OK)
        for (const KxFrameFigures& each : std::span(figures).first(taken))
            if (const auto place = m_measured.Find(each.dwPosition)) {
                Tell([&](RunListener& listener) { listener.Figures(*place, each); });
                m_measured.ForgetBefore(each.dwPosition);
            }
}

void SceneRun::FinishSceneLists() {
    FirstError error;
    for (std::size_t i = 0; i < m_settings.detection.methods.size(); ++i) {
        const std::string& path = m_settings.xmlPaths[i];
        if (path.empty())
            continue;
        const std::vector<std::int32_t>& positions = m_detections[i].positions;
        // The filter counts from the range's beginning, the file's positions from its own.
        if (m_skipped != 0)
            WriteSceneListFile(WideFromUtf8(path), positions, m_settings.detection.methods[i]);
        error.Attempt([&] { CheckSceneList(path, std::ssize(positions)); });
    }
    error.Rethrow();
}

void SceneRun::WarnAboutMarks() {
    for (std::size_t i = 0; i < m_detections.size(); ++i) {
        const std::string text =
            UnusedMarksText(m_detections[i].marks, m_skipped + m_samples, m_settings.detection.methods[i]);
        if (!text.empty())
            return m_reading.console.Warning(Named(text));
    }
}

} // namespace scenedetect
