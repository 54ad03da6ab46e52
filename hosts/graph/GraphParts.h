// Filters of a graph, and their pins.
#pragma once

#include "baseclasses/ComRef.h"
#include "baseclasses/MediaType.h"

#include <dshow.h>

#include <string>

namespace scenedetect {

/// A filter that is in a graph as long as the object lives. Both must outlive it: keep references.
class AddedFilter {
  public:
    AddedFilter(IGraphBuilder& graph, IBaseFilter& filter, const std::wstring& name);
    ~AddedFilter() { m_graph.RemoveFilter(&m_filter); }
    AddedFilter(const AddedFilter&) = delete;
    AddedFilter& operator=(const AddedFilter&) = delete;

  private:
    IGraphBuilder& m_graph;
    IBaseFilter& m_filter;
};

/// The filter's first pin of this direction; HostError when it has none.
[[nodiscard]] ComRef<IPin> FirstPin(IBaseFilter& filter, PIN_DIRECTION direction);
/// The filter's first output that offers video; none when there is no such.
[[nodiscard]] ComRef<IPin> FirstVideoOutput(IBaseFilter& filter);
/// The first type of video that a pin offers; false when it offers none.
[[nodiscard]] bool FindVideoType(IPin& pin, CMediaType& type);

} // namespace scenedetect
