// The base of every input pin that takes samples: its allocator, flushing, and the checks on each sample.
#pragma once

#include "baseclasses/BasePin.h"

/// Receive checks a sample and reads its properties; a derived class calls it first and then does its work,
/// holding a lock of its own for streaming.
class CBaseInputPin : public CBasePin, public IMemInputPin {
  public:
    CBaseInputPin(LPCTSTR pObjectName, CBaseFilter* pFilter, CCritSec* pLock, HRESULT* phr, LPCWSTR pName);
    ~CBaseInputPin() override;

    DECLARE_IUNKNOWN
    STDMETHODIMP NonDelegatingQueryInterface(REFIID riid, void** ppv) override;

    STDMETHODIMP GetAllocator(IMemAllocator** ppAllocator) override;
    STDMETHODIMP NotifyAllocator(IMemAllocator* pAllocator, BOOL bReadOnly) override;
    STDMETHODIMP GetAllocatorRequirements(ALLOCATOR_PROPERTIES* pProps) override;
    /// S_OK when the sample may be processed, S_FALSE while flushing, else the reason why not. A type that
    /// comes with a sample unasked and is refused ends the stream: EC_ERRORABORT, VFW_E_INVALIDMEDIATYPE.
    STDMETHODIMP Receive(IMediaSample* pSample) override;
    STDMETHODIMP ReceiveMultiple(IMediaSample** pSamples, LONG nSamples, LONG* nSamplesProcessed) override;
    /// Whether the filter's connected output pins can block; S_OK when none is connected.
    STDMETHODIMP ReceiveCanBlock() override;

    STDMETHODIMP BeginFlush() override;
    STDMETHODIMP EndFlush() override;

    HRESULT Inactive() override;
    HRESULT BreakConnect() override;

    bool IsReadOnly() const { return m_bReadOnly; }
    bool IsFlushing() const { return m_bFlushing; }
    /// Whether samples can be taken now: S_OK, S_FALSE while flushing, VFW_E_NOT_CONNECTED,
    /// VFW_E_WRONG_STATE when stopped, VFW_E_RUNTIME_ERROR.
    virtual HRESULT CheckStreaming();
    /// Hands a quality message to the sink, or without one to the upstream pin; VFW_E_NOT_FOUND when neither
    /// can take it.
    HRESULT PassNotify(Quality& q);
    /// The properties of the sample in hand; streaming thread only.
    const AM_SAMPLE2_PROPERTIES* SampleProps() const { return &m_SampleProps; }

  protected:
    IMemAllocator* m_pAllocator = nullptr;
    bool m_bReadOnly = false;
    std::atomic<bool> m_bFlushing = false;
    AM_SAMPLE2_PROPERTIES m_SampleProps = {};

  private:
    void ReadSampleProps(IMediaSample* pSample);

    /// Holds the attached type of a sample that only has the older interface.
    CMediaType m_attachedType;
};

/// A new CMemAllocator with one reference.
HRESULT CreateMemoryAllocator(IMemAllocator** ppAllocator);
