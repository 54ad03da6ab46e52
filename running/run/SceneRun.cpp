#include "running/run/SceneRun.h"

#include "platform/Text.h"
#include "products/files/OutputFile.h"
#include "reading/base/FilePath.h"
#include "reading/base/HostError.h"
#include "reading/base/ListText.h"
#include "running/detection/DetectionCalls.h"
#include "running/detection/SceneListCheck.h"
#include "running/run/ListCheck.h"
#include "running/run/MemoryFile.h"
#include "running/run/UsableMethods.h"
#include "scenes/SceneListFile.h"

#include <algorithm>
#include <array>
#include <limits>
#include <string>
#include <utility>

namespace scenedetect {
namespace {

std::string List(const char* word, const std::vector<std::string>& names) {
    std::string text;
    for (const std::string& name : names)
        text += (text.empty() ? "; " + std::string(word) + ": " : ", ") + name;
    return text;
}

// What became of a run that failed.
std::string OutcomeText(std::int64_t frames, const RunOutputs& outputs) {
    return " (after " + std::to_string(frames) + (frames == 1 ? " frame" : " frames") +
           List("written", outputs.written) + List("not written", outputs.missing) + ')';
}

std::optional<FilmPart> PartOf(const RunSettings& settings) {
    if (!settings.range.part.IsChosen())
        return std::nullopt;
    std::error_code error;
    const auto bytes = std::filesystem::file_size(FilePath(settings.input), error);
    if (error)
        throw HostError(settings.input + ": cannot be measured in parts: " + error.message());
    return FilmPart(settings.range.part, static_cast<std::int64_t>(bytes));
}

} // namespace

SceneRun::SceneRun(const RunSettings& settings, const Reading& reading, RunProgress& progress,
                   Listeners listeners)
    : m_part(PartOf(settings)),
      m_reading{reading.stop, reading.console, reading.threads, m_part ? &*m_part : nullptr,
                settings.decodesFast},
      m_progress(progress),
      m_listeners(std::move(listeners)),
      m_reader(OpenPictures(settings.input, m_reading,
                            [this](const Irregularity& each) { m_irregularities.push_back(each); })),
      m_settings(SettingsFor(settings, m_reader->Format(), m_reader->Info(), reading.console)),
      m_graph(m_reader->Format(), m_settings.detection.methods.size()),
      m_merge(m_settings.detection.Words(), !m_settings.detection.transitions.IsEmpty()),
      m_tapeScenes(
          m_settings.detection.cuts,
          [this](std::size_t cut, std::int64_t sample) { m_merge.Add(m_detections.size() + cut, sample); }),
      m_transitions(m_settings.detection.transitions,
                    [this](SceneKind kind, std::int64_t sample) { m_merge.Add(KindWord(kind), sample); }),
      m_scenes(
          settings.length, m_reader->Scale(),
          [this](const FoundScene& scene) {
              Tell([&scene](RunListener& listener) { listener.Scene(scene); });
          },
          [this](std::int64_t sample, const FilePlace& place) {
              Tell([&](RunListener& listener) { listener.Gap(sample, place); });
          }),
      m_range(settings.range, m_reader->Scale(), m_reading.part) {
    if (m_part && (!m_part->HasPackets() || m_reader->Format().fourcc == kDvFourcc))
        throw HostError(settings.input +
                        ": DV is not measured in parts: it is read about as fast as it can be copied, and "
                        "no table has what its frames say");

    if (m_settings.decodesFast && m_reader->Shortcut().empty())
        m_reading.console.Message(Named("--decode fast changes nothing: " + m_reader->Description()));
    SetUpFilters();
    if (!m_settings.listPath.empty())
        SetUpList();
}

void SceneRun::SetUpFilters() {
    for (std::size_t i = 0; i < m_settings.detection.methods.size(); ++i) {
        const KxDetectionMethod method = m_settings.detection.methods[i];
        ChooseDetection(m_graph.Scenes(i), m_graph.ScenesEx(i), method, m_settings.detection);
        m_detections.push_back({MarkSchedule(m_settings.detection.marks, method), {}, {}, false});
        if (method != KxMethodVideo)
            continue;
        ApplyParameters(m_graph.Tuning(i), m_settings.detection.parameters);
        if (m_settings.wantsFigures || m_transitions.IsOn()) {
            m_measuring = i;
            Require(m_graph.Tuning(i).EnableFrameFigures(TRUE), "the filter does not hand out its figures");
        }
        if (m_settings.wantsDistances || m_transitions.IsOn())
            Require(m_graph.Distances(i).EnableFrameDistances(TRUE), "the filter does not measure distances");
    }
    if (const auto refusing = m_graph.Connect())
        throw HostError(RefusalText(m_settings.detection.methods[*refusing], m_settings.input));
}

// Better to know now than when the clips before a mistake are there.
void SceneRun::SetUpList() {
    m_list = ReadSceneListFile(m_settings.listPath);
    m_listed.emplace(*m_list, m_reader->Scale(), m_reader->Info().startTimecode);
    if (m_settings.checksListFirst && m_reader->Format().fourcc == kDvFourcc)
        RequireListFits(m_settings, *m_list, m_reading);
}

// Each of those that are left, whatever becomes of another.
template <typename Call>
void SceneRun::Tell(Call call) {
    FirstError first;
    for (auto& listener : m_listeners) {
        FirstError error;
        error.Attempt([&] { call(*listener); });
        if (error) {
            listener->ListOutputs(m_outputs);
            listener.reset();
        }
        first.Attempt([&] { error.Rethrow(); });
    }
    std::erase(m_listeners, nullptr);
    first.Rethrow();
}

RunEnding SceneRun::Run() {
    for (std::size_t i = 0; i < m_detections.size(); ++i)
        m_graph.Scenes(i).EnableDetection(TRUE);
    if (FAILED(m_graph.Run()))
        throw HostError("the filter graph can't be started");

    FirstError error;
    error.Attempt([this] { FeedGraph(); });
    const RunEnding ending = m_reading.stop             ? RunEnding::Stopped
                             : m_reader->HasBrokenOff() ? RunEnding::BrokeOff
                                                        : RunEnding::Complete;
    m_graph.Source().DeliverEndOfStream();
    if (!error)
        error.Attempt([this] { DrainAll(); });
    // Of nothing there is nothing to write, unless that is what a part has.
    const bool isGood = !error && (m_samples != 0 || m_part);
    for (std::size_t i = 0; i < m_detections.size(); ++i)
        if (isGood && !m_settings.xmlPaths[i].empty())
            error.Attempt([&] { EndDetection(i); });
        else
            m_graph.Scenes(i).EnableDetection(FALSE);
    m_graph.Stop();
    if (isGood && !error)
        error.Attempt([&] { WriteOutputs(ending); });
    if (m_samples == 0 && !m_part && ending != RunEnding::Stopped)
        error.Attempt([this] {
            throw HostError(m_settings.input + ": no frame lies in the part that was asked for" +
                            (m_range.HasEnded() ? "" : "; it has " + std::to_string(m_skipped)));
        });
    try {
        error.Rethrow();
    } catch (const OutputClosed&) {
        throw;
    } catch (const std::exception& thrown) {
        throw HostError(ErrorText(thrown) + (m_samples != 0 ? OutcomeText(m_samples, Outputs()) : ""));
    }
    TellOfShortScenes();
    TellOfFullLists();
    WarnAboutMarks();
    if (m_settings.detection.readTimecode)
        m_reading.console.Answer(Named(m_timecode.Text(m_graph.Scenes(0))));
    return ending;
}

void SceneRun::TellListed(const Picture& picture) {
    if (!m_listed)
        return;
    const auto turn = m_listed->At(picture.place);
    const std::int64_t sample = m_samples - 1;
    if (turn.begins)
        m_scenes.Add({0, sample, m_skipped + sample, picture.place, turn.begins->method, PacksOf(picture),
                      turn.begins->name});
    else if (turn.ends)
        Tell([&](RunListener& listener) { listener.Gap(sample, picture.place); });
}

void SceneRun::FinishList() {
    if (!m_listed || m_samples == 0 || m_reading.stop)
        return;
    if (!m_range.HasEnded())
        m_listed->Finish(m_end);
    if (const std::int64_t left = m_listed->LeftOut(); left != 0)
        m_reading.console.Message(Named(std::to_string(left) + (left == 1 ? " frame lies" : " frames lie") +
                                        " in no scene of " + m_list->path));
}

void SceneRun::DrainAll() {
    FinishList();
    m_tapeScenes.Finish();
    DrainFilters();
    DrainFigures();
    m_transitions.Finish();
    TellScenes(std::numeric_limits<std::int64_t>::max());
    if (!m_graph.Sink().HasEnded())
        throw HostError("the end of the stream did not pass the filter graph");
}

// Figures are final once detection is off.
void SceneRun::WriteOutputs(RunEnding ending) {
    DrainFigures();
    FirstError error;
    for (std::size_t i = 0; i < m_detections.size(); ++i)
        if (const std::string& path = m_settings.xmlPaths[i]; !path.empty())
            error.Attempt([&] {
                WriteFile(path, Existing::Replace, m_detections[i].list);
                m_detections[i].isListWritten = true;
            });
    const RunEnd end{m_samples, m_end, ending, m_range.HasEnded()};
    error.Attempt([&] { Tell([&end](RunListener& listener) { listener.End(end); }); });
    error.Rethrow();
}

RunOutputs SceneRun::Outputs() const {
    RunOutputs outputs = m_outputs;
    for (std::size_t i = 0; i < m_detections.size(); ++i)
        if (const std::string& path = m_settings.xmlPaths[i]; !path.empty())
            outputs.Add(NameOfOutput(path), m_detections[i].isListWritten);
    for (const auto& listener : m_listeners)
        listener->ListOutputs(outputs);
    return outputs;
}

std::string SceneRun::Named(const std::string& text) const {
    return m_settings.isOneOfMany ? m_settings.input + ": " + text : text;
}

void SceneRun::Begin(const Picture& first) {
    if (std::exchange(m_hasBegun, true))
        return;
    const RunInfo info{m_settings.input,
                       m_reader->Scale(),
                       m_reader->Format(),
                       m_reader->Info(),
                       first.place,
                       PacksOf(first).audio.has_value(),
                       m_reader->Description(),
                       m_list ? "none, scenes of " + m_list->path : m_settings.detection.WordList(", "),
                       m_settings.detection.parameters.On({})};
    Tell([&info](RunListener& listener) { listener.Begin(info); });
}

// What the reader finds wrong on its way is told here, where a listener may throw.
bool SceneRun::ReadPicture(Picture& picture) {
    const bool isThere = m_reader->Next(picture);
    Begin(picture);
    for (const Irregularity& each : std::exchange(m_irregularities, {}))
        Tell([&each](RunListener& listener) { listener.Irregular(each); });
    return isThere;
}

ComRef<PictureSample> SceneRun::TakeSample() {
    ComRef<PictureSample> sample = m_graph.Source().TakeSample();
    if (!sample)
        throw HostError("the filter graph gives no sample");
    return sample;
}

void SceneRun::FeedGraph() {
    while (!m_reading.stop) {
        ComRef<PictureSample> held = TakeSample();
        if (!ReadPicture(held->picture) || m_range.IsOver(held->picture.place))
            return;
        if (!m_range.HasBegun(held->picture.place)) {
            if (m_skipped++ == 0) // by now all have begun that want to know of the file's first picture
                m_skipped +=
                    m_reader->PassOver([this](const FilePlace& place) { return m_range.Begins(place); });
            continue;
        }
        if (m_range.IsOver(held->picture.place)) // where it has begun
            return;
        for (std::size_t i = 0; i < m_detections.size(); ++i) {
            RequireComparable(held->picture.format, m_settings.detection.methods[i], m_settings.input);
            if (m_detections[i].marks.IsDue(m_skipped + m_samples))
                m_graph.Scenes(i).MarkScene();
        }
        if (m_samples == 0)
            m_timecode.Note(held->picture);
        if (m_graph.Source().Deliver(*held) != S_OK)
            throw HostError(m_settings.input + ": frame " + std::to_string(held->picture.place.frame) +
                            " is refused by the filter graph");
        Pass(std::move(held));
        if (m_listed && m_samples == 1 && !PassPlaces())
            return;
    }
}

// Of decoded video the list needs the places only. False when the range is over.
bool SceneRun::PassPlaces() {
    SampleTable places;
    const auto note = [&places](const FilePlace& place) {
        places.Append(place);
        return false;
    };
    const std::int64_t count = m_reader->PassOver(note);
    for (std::int64_t i = 0; i < count && !m_reading.stop; ++i) {
        ComRef<PictureSample> held = TakeSample();
        held->picture.Clear();
        held->picture.place = *places.Find(i);
        if (m_range.IsOver(held->picture.place))
            return false;
        Pass(std::move(held));
    }
    return true;
}

// Of a picture that is through the filters.
void SceneRun::Pass(ComRef<PictureSample> held) {
    if (m_measuring)
        m_measured.Append(held->picture.place);
    m_end = PlaceAfter(held->picture.place, m_reader->Scale());
    m_recent.Add(std::move(held));
    const Picture& picture = m_recent.Last().picture;
    m_tapeScenes.Note(picture, m_samples);
    m_range.Pass(picture.place);
    ++m_samples;
    DrainFilters();
    DrainFigures();
    const std::int64_t settledBefore =
        std::min(m_samples - RunListener::kLookBack, m_transitions.SettledBefore());
    TellScenes(settledBefore);
    TellListed(picture);
    Tell([this](RunListener& listener) { listener.Passed(m_recent.Last(), m_samples - 1); });
    m_recent.ForgetBefore(settledBefore);
    m_progress.frames.store(m_samples, std::memory_order_relaxed);
    m_progress.fraction.store(m_reader->Fraction(), std::memory_order_relaxed);
}

void SceneRun::DrainFilters() {
    for (std::size_t i = 0; i < m_detections.size(); ++i)
        TakeScenes(m_graph.Scenes(i), [&](std::int32_t position) {
            m_detections[i].positions.push_back(static_cast<std::int32_t>(m_skipped + position));
            if (m_settings.detection.methods[i] == KxMethodVideo)
                m_transitions.Add(position);
            else
                m_merge.Add(i, position);
        });
}

void SceneRun::TellScenes(std::int64_t settledBefore) {
    m_merge.Take(settledBefore, [&](std::int64_t position, const std::string& method) {
        if (!m_recent.Has(position))
            throw HostError("the filter reports a scene at " + std::to_string(position) +
                            ", where there is no sample");
        m_scenes.Add({0, position, m_skipped + position, m_recent.PlaceOf(position), method,
                      m_recent.PacksAt(position)});
    });
    if (settledBefore >= m_samples)
        m_scenes.Finish(m_end);
    else if (m_recent.Has(settledBefore))
        m_scenes.Settle(m_recent.PlaceOf(settledBefore));
}

void SceneRun::DrainFigures() {
    if (!m_measuring)
        return;
    std::array<KxFrameFigures, 16> figures{};
    std::array<KxFrameDistances, 16> distances{};
    ULONG taken = 0;
    while (m_graph.Distances(*m_measuring)
               .GetFrameDistances(figures.size(), figures.data(), distances.data(), &taken) == S_OK)
        for (ULONG i = 0; i < taken; ++i)
            if (const auto place = m_measured.Find(figures[i].dwPosition)) {
                m_transitions.Note(figures[i], distances[i]);
                Tell([&](RunListener& listener) { listener.Figures(*place, figures[i], distances[i]); });
                m_measured.ForgetBefore(figures[i].dwPosition);
            }
}

// Through a file in memory: an output of whatever kind gets a whole list or none.
void SceneRun::EndDetection(std::size_t filter) {
    const MemoryFile file;
    const std::wstring path = WideFromUtf8(file.Path());
    Detection& detection = m_detections[filter];
    if (m_skipped == 0)
        m_graph.Scenes(filter).EnableSceneListFile(path.c_str());
    m_graph.Scenes(filter).EnableDetection(FALSE);
    // The filter counts from the range's beginning, the file's positions from its own.
    if (m_skipped != 0)
        WriteSceneListFile(path, detection.positions, m_settings.detection.methods[filter]);
    detection.list = ReadSceneList(file.Path(), std::ssize(detection.positions));
}

void SceneRun::TellOfShortScenes() {
    if (const std::int64_t frames = m_scenes.DroppedFrames(); frames != 0)
        m_reading.console.Message(Named(std::to_string(m_scenes.LeftOut()) + " of " +
                                        std::to_string(m_scenes.LeftOut() + m_scenes.Count()) +
                                        " scenes are shorter than --min-scene: their " +
                                        std::to_string(frames) + " frames lie in none"));
}

void SceneRun::TellOfFullLists() {
    const DetectionSettings& detection = m_settings.detection;
    const std::pair<bool, const char*> options[] = {
        {!detection.cuts.empty(), "--cut-at"},
        {m_transitions.HasChanged() && detection.transitions.dropsFlashes, "--flashes"},
        {m_transitions.HasChanged() && detection.transitions.FindsFades(), "--fades"},
        {m_transitions.HasChanged() && detection.transitions.findsDissolves, "--dissolves"},
        {m_scenes.LeftOut() != 0, "--min-scene"}};
    std::string names;
    for (const auto& [acts, name] : options)
        if (acts)
            AppendToList(names, ", ", name);
    if (names.empty())
        return;
    const auto last = names.rfind(", ");
    const std::string option =
        last == std::string::npos ? names + " acts" : names.replace(last, 2, " and ") + " act";
    for (std::size_t i = 0; i < m_detections.size(); ++i)
        if (const std::string& path = m_settings.xmlPaths[i]; !path.empty())
            m_reading.console.Message(
                Named(NameOfOutput(path) + " has the " + std::to_string(m_detections[i].positions.size()) +
                      " scenes that the filter found: " + option + " on all other outputs"));
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
