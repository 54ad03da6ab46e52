// The graph's end: takes every sample.
#pragma once

#include "baseclasses/BaseFilter.h"
#include "baseclasses/BaseInputPin.h"

#include <atomic>

namespace scenedetect {

class SinkPin final : public CBaseInputPin {
  public:
    SinkPin(CBaseFilter* filter, CCritSec* lock, HRESULT* phr);

    HRESULT CheckMediaType(const CMediaType* type) override;
    STDMETHODIMP ReceiveCanBlock() override { return S_FALSE; }
    STDMETHODIMP EndOfStream() override;

    [[nodiscard]] bool HasEnded() const { return m_hasEnded; }

  private:
    std::atomic<bool> m_hasEnded = false;
};

class SinkFilter final : public CBaseFilter {
  public:
    explicit SinkFilter(HRESULT* phr);

    int GetPinCount() override { return 1; }
    CBasePin* GetPin(int n) override { return n == 0 ? &m_pin : nullptr; }

    /// Whether the end of the stream arrived. Any thread.
    [[nodiscard]] bool HasEnded() const { return m_pin.HasEnded(); }

  private:
    CCritSec m_lock;
    SinkPin m_pin;
};

} // namespace scenedetect
