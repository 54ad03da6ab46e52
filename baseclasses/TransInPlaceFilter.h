// A transform filter that works in the sample it is given and hands on the same one.
#pragma once

#include "baseclasses/TransInPlacePins.h"
#include "baseclasses/TransformFilter.h"

/// Both pins share the upstream allocator, and samples pass without a copy. Only when the filter modifies
/// data and upstream said that its buffers are read-only, or the downstream pin refuses the upstream
/// allocator, the output has an allocator of its own and samples are copied into it.
///
/// In a graph, connecting the output has the graph connect the input anew, so that upstream hears of the
/// downstream pin's type and allocator. Without a graph both connections must have the same type.
class CTransInPlaceFilter : public CTransformFilter {
  public:
    CTransInPlaceFilter(LPCTSTR pName, LPUNKNOWN pUnk, REFCLSID clsid, HRESULT* phr,
                        bool bModifiesData = true);

    /// Works on the sample. S_FALSE drops it. Streaming thread, under m_csReceive.
    virtual HRESULT Transform(IMediaSample* pSample) = 0;

    /// Makes both pins when first asked.
    CBasePin* GetPin(int n) override;
    /// Not asked by these pins, which ask the pins on the other side instead.
    virtual HRESULT CheckTransform(const CMediaType* mtIn, const CMediaType* mtOut);
    HRESULT CompleteConnect(PIN_DIRECTION dir, IPin* pReceivePin) override;
    HRESULT Receive(IMediaSample* pSample) override;

  protected:
    friend class CTransInPlaceInputPin;
    friend class CTransInPlaceOutputPin;

    const bool m_bModifiesData;

    CTransInPlaceInputPin* InputPin() const { return static_cast<CTransInPlaceInputPin*>(m_pInput); }
    CTransInPlaceOutputPin* OutputPin() const { return static_cast<CTransInPlaceOutputPin*>(m_pOutput); }
    /// Whether samples have to be copied.
    bool UsingDifferentAllocators() const;
    /// A sample of the output's allocator that equals `pSource` in data, times, flags and type.
    HRESULT Copy(IMediaSample* pSource, IMediaSample** ppCopy);
};
