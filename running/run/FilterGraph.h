// The graph of a run: source, scene detect filters one after another, and sink.
#pragma once

#include "baseclasses/ComRef.h"
#include "running/detection/SourceFilter.h"
#include "running/run/SinkFilter.h"
#include "scenes/IKxSceneDetect.h"

#include <cstddef>
#include <optional>
#include <vector>

namespace scenedetect {

/// Lives on the thread that runs the host; the source alone is for the streaming thread while that runs.
class FilterGraph {
  public:
    /// Makes the filters; those that detect, `count` of them, come from the module's class factory. HostError
    /// when they don't.
    FilterGraph(const PictureFormat& format, std::size_t count);
    ~FilterGraph();
    FilterGraph(const FilterGraph&) = delete;
    FilterGraph& operator=(const FilterGraph&) = delete;

    [[nodiscard]] IKxSceneDetect2& Scenes(std::size_t filter) const { return *m_detectors[filter].scenes; }
    [[nodiscard]] IKxSceneDetectEx& ScenesEx(std::size_t filter) const {
        return *m_detectors[filter].scenesEx;
    }
    [[nodiscard]] IKxSceneDetectTuning& Tuning(std::size_t filter) const {
        return *m_detectors[filter].tuning;
    }
    [[nodiscard]] IKxSceneDetectDistances& Distances(std::size_t filter) const {
        return *m_detectors[filter].distances;
    }
    [[nodiscard]] SourceFilter& Source() const { return *m_source; }
    [[nodiscard]] const SinkFilter& Sink() const { return *m_sink; }

    /// Connects the pins. The detection methods must be set by now. The number of the filter that refuses its
    /// video, if one does.
    [[nodiscard]] std::optional<std::size_t> Connect();
    [[nodiscard]] HRESULT Run();
    /// Only once the streaming thread is done. Also done by the destructor.
    void Stop() noexcept;

  private:
    // Members are released in the reverse order, interfaces before their filter.
    struct SceneDetect {
        ComRef<IBaseFilter> filter;
        ComRef<IKxSceneDetect2> scenes;
        ComRef<IKxSceneDetectEx> scenesEx;
        ComRef<IKxSceneDetectTuning> tuning;
        ComRef<IKxSceneDetectDistances> distances;
    };

    ComRef<SourceFilter> m_source;
    ComRef<SinkFilter> m_sink;
    std::vector<SceneDetect> m_detectors;
    // From the sink to the source, in which order none delivers to one that is stopped.
    std::vector<IBaseFilter*> m_upstream;
};

} // namespace scenedetect
