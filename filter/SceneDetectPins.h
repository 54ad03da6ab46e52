// The filter's two pins: the in-place pins with short ids, and no internal connections reported.
#pragma once

#include "baseclasses/TransInPlaceFilter.h"

namespace scenedetect {

class SceneDetectInputPin final : public CTransInPlaceInputPin {
  public:
    SceneDetectInputPin(CTransInPlaceFilter* filter, HRESULT* phr);
    STDMETHODIMP QueryId(LPWSTR* id) override;
    STDMETHODIMP QueryInternalConnections(IPin** pins, ULONG* count) override;
};

class SceneDetectOutputPin final : public CTransInPlaceOutputPin {
  public:
    SceneDetectOutputPin(CTransInPlaceFilter* filter, HRESULT* phr);
    STDMETHODIMP QueryId(LPWSTR* id) override;
    STDMETHODIMP QueryInternalConnections(IPin** pins, ULONG* count) override;
};

} // namespace scenedetect
