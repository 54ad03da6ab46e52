#include "hosts/graph/GraphParts.h"

#include "baseclasses/MediaType.h"
#include "running/detection/DetectionCalls.h"

#include <functional>

namespace scenedetect {
namespace {

ComRef<IPin> FindPin(IBaseFilter& filter, PIN_DIRECTION wanted, const std::function<bool(IPin&)>& isWanted) {
    IEnumPins* pins = nullptr;
    Require(filter.EnumPins(&pins), "a filter tells of no pins");
    const ComRef<IEnumPins> held(pins);
    IPin* next = nullptr;
    while (pins->Next(1, &next, nullptr) == S_OK) {
        ComRef<IPin> pin(next);
        PIN_DIRECTION direction = PINDIR_INPUT;
        if (SUCCEEDED(pin->QueryDirection(&direction)) && direction == wanted && isWanted(*pin))
            return pin;
    }
    return nullptr;
}

bool OffersVideo(IPin& pin) {
    IEnumMediaTypes* types = nullptr;
    if (FAILED(pin.EnumMediaTypes(&types)))
        return false;
    const ComRef<IEnumMediaTypes> held(types);
    AM_MEDIA_TYPE* next = nullptr;
    bool isVideo = false;
    while (!isVideo && types->Next(1, &next, nullptr) == S_OK) {
        isVideo = next->majortype == MEDIATYPE_Video;
        DeleteMediaType(next);
    }
    return isVideo;
}

} // namespace

AddedFilter::AddedFilter(IGraphBuilder& graph, IBaseFilter& filter, const std::wstring& name)
    : m_graph(graph), m_filter(filter) {
    Require(graph.AddFilter(&filter, name.c_str()), "a filter can't be added to the graph");
}

ComRef<IPin> FirstPin(IBaseFilter& filter, PIN_DIRECTION direction) {
    auto pin = FindPin(filter, direction, [](IPin&) { return true; });
    Require(pin ? S_OK : VFW_E_NOT_FOUND, "a filter lacks a pin");
    return pin;
}

ComRef<IPin> FirstVideoOutput(IBaseFilter& filter) {
    return FindPin(filter, PINDIR_OUTPUT, OffersVideo);
}

} // namespace scenedetect
