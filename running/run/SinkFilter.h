// The graph's end: takes every sample and counts them.
#pragma once

#include "baseclasses/BaseFilter.h"
#include "baseclasses/BaseInputPin.h"

#include <atomic>
#include <cstdint>

namespace scenedetect {

class SinkPin final : public CBaseInputPin {
  public:
    SinkPin(CBaseFilter* filter, CCritSec* lock, HRESULT* phr);

    HRESULT CheckMediaType(const CMediaType* type) override;
    STDMETHODIMP Receive(IMediaSample* sample) override;
    STDMETHODIMP ReceiveCanBlock() override { return S_FALSE; }
    STDMETHODIMP EndOfStream() override;

    [[nodiscard]] std::int64_t SampleCount() const { return m_sampleCount; }
    [[nodiscard]] bool HasEnded() const { return m_hasEnded; }

  private:
    std::atomic<std::int64_t> m_sampleCount = 0;
    std::atomic<bool> m_hasEnded = false;
};

class SinkFilter final : public CBaseFilter {
  public:
    explicit SinkFilter(HRESULT* phr);

    int GetPinCount() override { return 1; }
    CBasePin* GetPin(int n) override { return n == 0 ? &m_pin : nullptr; }

    /// Samples that arrived: the scenes of all of these have been recorded. Any thread.
    [[nodiscard]] std::int64_t SampleCount() const { return m_pin.SampleCount(); }
    /// Whether the end of the stream arrived. Any thread.
    [[nodiscard]] bool HasEnded() const { return m_pin.HasEnded(); }

  private:
    CCritSec m_lock;
    SinkPin m_pin;
};

} // namespace scenedetect
