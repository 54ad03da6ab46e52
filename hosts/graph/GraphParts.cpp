#include "hosts/graph/GraphParts.h"

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
    CMediaType type;
    return FindPin(filter, PINDIR_OUTPUT, [&type](IPin& pin) { return FindVideoType(pin, type); });
}

bool FindVideoType(IPin& pin, CMediaType& type) {
    IEnumMediaTypes* types = nullptr;
    if (FAILED(pin.EnumMediaTypes(&types)))
        return false;
    const ComRef<IEnumMediaTypes> held(types);
    AM_MEDIA_TYPE* next = nullptr;
    while (types->Next(1, &next, nullptr) == S_OK) {
        const bool isVideo = next->majortype == MEDIATYPE_Video && SUCCEEDED(type.Set(*next));
        DeleteMediaType(next);
        if (isVideo)
            return true;
    }
    return false;
}

} // namespace scenedetect
