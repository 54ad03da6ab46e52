// A run in the system's graph, from the filter's making to its last scene.
#pragma once

#include "hosts/cli/GraphOptions.h"
#include "hosts/graph/GraphParts.h"
#include "hosts/graph/GraphSource.h"
#include "hosts/graph/MarkFilter.h"
#include "hosts/graph/SceneDetectModule.h"
#include "products/outputs/SceneCsv.h"
#include "reading/base/Console.h"
#include "running/detection/MarkSchedule.h"
#include "scenes/IKxSceneDetect.h"

#include <atomic>
#include <memory>
#include <optional>
#include <string>

namespace scenedetect {

/// `options`, `stop` and `console` must outlive the object; COM must be there. Setting `stop` ends the run.
class GraphHost {
  public:
    /// Makes the filter, opens the input and builds the graph. HostError when any of this fails.
    GraphHost(const GraphOptions& options, std::atomic<bool>& stop, Console& console);

    /// Runs to the end of the input; prints scenes while it goes. HostError when reading or writing fails:
    /// what was found until then has been printed and written.
    void Run();

  private:
    void Connect();
    void SetParameters() const;
    void WaitForEnd();
    void PrintScenes();
    void ReportEnd(bool isInterrupted);

    const GraphOptions& m_options;
    std::atomic<bool>& m_stop;
    Console& m_console;

    // Members are released in the reverse order, so that nothing outlives the module whose code it runs.
    const SceneDetectModule m_module;
    const ComRef<IGraphBuilder> m_graph;
    const ComRef<IBaseFilter> m_filter;
    const ComRef<IKxSceneDetect2> m_scenes;
    const ComRef<IKxSceneDetectEx> m_scenesEx;
    const ComRef<IBaseFilter> m_renderer;
    MarkSchedule m_marks;
    ComRef<MarkFilter> m_marker; // none without marks
    const AddedFilter m_addedFilter;
    const AddedFilter m_addedRenderer;
    std::optional<AddedFilter> m_addedMarker;
    const std::unique_ptr<GraphSource> m_source;
    std::optional<SceneCsv> m_csv;
    std::string m_lines = SceneCsv::Header({}); // to be printed
};

} // namespace scenedetect
