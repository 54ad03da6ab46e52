// The graph of a run: source, scene detect filter and sink, connected in this order.
#pragma once

#include "baseclasses/ComRef.h"
#include "hosts/kxscenes/SinkFilter.h"
#include "hosts/shared/SourceFilter.h"
#include "scenes/IKxSceneDetect.h"

namespace scenedetect {

/// Lives on the thread that runs the host; the source alone is for the streaming thread while that runs.
class FilterGraph {
  public:
    /// Makes the filters; the scene detect filter comes from the module's class factory. HostError when it
    /// does not.
    explicit FilterGraph(const PictureFormat& format);
    ~FilterGraph();
    FilterGraph(const FilterGraph&) = delete;
    FilterGraph& operator=(const FilterGraph&) = delete;

    [[nodiscard]] IKxSceneDetect2& Scenes() const { return *m_scenes; }
    [[nodiscard]] IKxSceneDetectEx& ScenesEx() const { return *m_scenesEx; }
    [[nodiscard]] SourceFilter& Source() const { return *m_source; }
    [[nodiscard]] const SinkFilter& Sink() const { return *m_sink; }

    /// Connects the pins. The detection method must be set by now. A failure code when the filter refuses.
    [[nodiscard]] HRESULT Connect();
    [[nodiscard]] HRESULT Run();
    /// Only once the streaming thread is done. Also done by the destructor.
    void Stop();

  private:
    // Members are released in the reverse order, interfaces before their filter.
    ComRef<SourceFilter> m_source;
    ComRef<SinkFilter> m_sink;
    ComRef<IBaseFilter> m_filter;
    ComRef<IKxSceneDetect2> m_scenes;
    ComRef<IKxSceneDetectEx> m_scenesEx;
};

} // namespace scenedetect
