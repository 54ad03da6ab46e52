// A filter with one input and one output: its pins, states and events.
#pragma once

#include "baseclasses/BaseFilter.h"
#include "baseclasses/TransformPins.h"

/// Two locks: `m_csFilter` for states and connections, `m_csReceive` for the streaming thread. Within Receive
/// a filter downstream may call anything, m_csFilter included, so nobody waits for m_csReceive while holding
/// m_csFilter. Stop first frees a streaming thread that waits for a buffer, and flushing does without the
/// receive lock, so that neither waits for ever.
class CTransformFilter : public CBaseFilter {
  public:
    CTransformFilter(LPCTSTR pName, LPUNKNOWN pUnk, REFCLSID clsid);
    ~CTransformFilter() override;

    virtual HRESULT CheckInputType(const CMediaType* mtIn) = 0;
    virtual HRESULT DecideBufferSize(IMemAllocator* pAllocator, ALLOCATOR_PROPERTIES* pProperties) = 0;
    /// The types that the output pin offers.
    virtual HRESULT GetMediaType(int iPosition, CMediaType* pMediaType) = 0;

    /// A quality message from downstream: S_FALSE passes it on upstream.
    virtual HRESULT AlterQuality(Quality q);
    virtual HRESULT SetMediaType(PIN_DIRECTION direction, const CMediaType* pmt);
    virtual HRESULT CheckConnect(PIN_DIRECTION dir, IPin* pPin);
    virtual HRESULT BreakConnect(PIN_DIRECTION dir);
    virtual HRESULT CompleteConnect(PIN_DIRECTION direction, IPin* pReceivePin);

    /// What the input pin does with a checked sample, and with the stream's events.
    virtual HRESULT Receive(IMediaSample* pSample) = 0;
    virtual HRESULT EndOfStream();
    virtual HRESULT BeginFlush();
    virtual HRESULT EndFlush();
    virtual HRESULT NewSegment(REFERENCE_TIME tStart, REFERENCE_TIME tStop, double dRate);

    int GetPinCount() override;
    /// "In" and "Out".
    STDMETHODIMP FindPin(LPCWSTR Id, IPin** ppPin) override;

    /// Returns when no other thread is inside Receive or EndOfStream.
    STDMETHODIMP Stop() override;
    STDMETHODIMP Pause() override;
    bool IsAtRest() const override { return IsStopped() && m_receiving == 0; }

  protected:
    friend class CTransformInputPin;
    friend class CTransformOutputPin;

    bool m_bEOSDelivered = false;
    std::atomic<bool> m_bSampleSkipped = false;
    std::atomic<bool> m_bQualityChanged = false;
    CCritSec m_csFilter;
    CCritSec m_csReceive;
    /// Calls that hold m_csReceive.
    std::atomic<int> m_receiving = 0;
    /// Owned; deleted with the filter.
    CTransformInputPin* m_pInput = nullptr;
    CTransformOutputPin* m_pOutput = nullptr;

    /// Holds the receive lock.
    class Receiving {
      public:
        explicit Receiving(CTransformFilter* filter)
            : m_lock(&filter->m_csReceive), m_count(filter->m_receiving) {
            ++m_count;
        }
        ~Receiving() { --m_count; }
        Receiving(const Receiving&) = delete;
        Receiving& operator=(const Receiving&) = delete;

      private:
        CAutoLock m_lock;
        std::atomic<int>& m_count;
    };

    /// An output buffer with times and flags of `pSample`.
    HRESULT InitializeOutputSample(IMediaSample* pSample, IMediaSample** ppOutSample);
    /// Delivers what Transform made, or drops it as the result of Transform says.
    HRESULT DeliverTransformed(HRESULT transformed, IMediaSample* pSample);

  private:
    /// Notes that a sample was not delivered, and tells the graph once a streaming period.
    void NoteSkippedSample();
    bool BothConnected() const;
};
