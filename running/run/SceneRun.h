// A run from the opened file to the last scene: picture by picture through the graph.
#pragma once

#include "products/listed/ListedScenes.h"
#include "reading/base/Console.h"
#include "reading/base/FirstError.h"
#include "reading/media/OpenPictures.h"
#include "reading/timing/SampleTable.h"
#include "running/detection/MarkSchedule.h"
#include "running/detection/StartTimecode.h"
#include "running/run/FilterGraph.h"
#include "running/run/RecentSamples.h"
#include "running/run/RunListener.h"
#include "running/run/RunProgress.h"
#include "running/run/RunSettings.h"
#include "running/run/SceneMerge.h"
#include "running/run/ShortScenes.h"
#include "running/run/TapeScenes.h"
#include "running/run/TransitionScenes.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

namespace scenedetect {

/// All on one thread. `reading` and `progress` must outlive the object.
class SceneRun {
  public:
    using Listeners = std::vector<std::unique_ptr<RunListener>>;

    /// Opens the input and sets the graph up, with those of several methods that can find scenes in such
    /// pictures; a warning tells of each other. HostError when either fails, and when no method can.
    SceneRun(const RunSettings& settings, const Reading& reading, RunProgress& progress, Listeners listeners);

    /// Runs to the end of the input. HostError when reading or writing fails, with what was written all the
    /// same and what was not.
    [[nodiscard]] RunEnding Run();
    [[nodiscard]] std::int64_t SampleCount() const { return m_samples; }
    [[nodiscard]] std::int64_t SceneCount() const { return m_scenes.Count(); }
    /// Once it has run.
    [[nodiscard]] RunOutputs Outputs() const;

  private:
    struct Detection {
        MarkSchedule marks;
        std::vector<std::int32_t> positions; // of its scenes in the file
        std::string list;                    // the scene list as the filter writes it
        bool isListWritten = false;
    };

    void SetUpFilters();
    void Begin(const Picture& first);
    [[nodiscard]] bool ReadPicture(Picture& picture);
    void FeedGraph();
    void SetUpList();
    void TellListed(const Picture& picture);
    void FinishList();
    [[nodiscard]] ComRef<PictureSample> TakeSample();
    [[nodiscard]] bool PassPlaces();
    void Pass(ComRef<PictureSample> held);
    void DrainFilters();
    void DrainFigures();
    void TellScenes(std::int64_t settledBefore);
    void DrainAll();
    void EndDetection(std::size_t filter);
    void WriteOutputs(RunEnding ending);
    void TellOfShortScenes();
    void TellOfFullLists();
    void WarnAboutMarks();
    [[nodiscard]] std::string Named(const std::string& text) const;
    template <typename Call>
    void Tell(Call call);

    std::optional<FilmPart> m_part;
    const Reading m_reading;
    RunProgress& m_progress;
    Listeners m_listeners;                      // one that failed is no more there
    std::vector<Irregularity> m_irregularities; // that nobody was told of yet
    const std::unique_ptr<PictureReader> m_reader;
    const RunSettings m_settings; // with what can find scenes here
    FilterGraph m_graph;
    std::vector<Detection> m_detections; // as the graph's filters
    SceneMerge m_merge;                  // of the filters, then of the tape's cuts
    TapeScenes m_tapeScenes;
    TransitionScenes m_transitions;
    ShortScenes m_scenes;
    std::optional<SceneList> m_list; // in place of filters
    std::optional<ListedScenes> m_listed;
    RunOutputs m_outputs; // of listeners that failed
    StartTimecode m_timecode;
    std::optional<std::size_t> m_measuring; // the filter whose figures are wanted
    bool m_hasBegun = false;
    SampleTable m_measured; // places that figures are still to come for
    RunRange m_range;
    std::int64_t m_skipped = 0; // before the range
    std::int64_t m_samples = 0; // that have passed the filters
    FilePlace m_end;            // after the last of them
    RecentSamples m_recent;
};

} // namespace scenedetect
