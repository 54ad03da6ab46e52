#include "filter/SceneDetectPins.h"

#include "baseclasses/WideString.h"

namespace scenedetect {

SceneDetectInputPin::SceneDetectInputPin(CTransInPlaceFilter* filter, HRESULT* phr)
    : CTransInPlaceInputPin(nullptr, filter, phr, L"Input") {}

STDMETHODIMP SceneDetectInputPin::QueryId(LPWSTR* id) {
    return AMGetWideString(L"In", id);
}

STDMETHODIMP SceneDetectInputPin::QueryInternalConnections(IPin** /*pins*/, ULONG* /*count*/) {
    return E_NOTIMPL;
}

SceneDetectOutputPin::SceneDetectOutputPin(CTransInPlaceFilter* filter, HRESULT* phr)
    : CTransInPlaceOutputPin(nullptr, filter, phr, L"Output") {}

STDMETHODIMP SceneDetectOutputPin::QueryId(LPWSTR* id) {
    return AMGetWideString(L"Out", id);
}

STDMETHODIMP SceneDetectOutputPin::QueryInternalConnections(IPin** /*pins*/, ULONG* /*count*/) {
    return E_NOTIMPL;
}

} // namespace scenedetect
