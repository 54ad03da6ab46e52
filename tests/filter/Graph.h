// A small graph for the filter's tests: a source and a sink of their own around the filter's pins.
#pragma once

#include "baseclasses/BaseFilter.h"
#include "baseclasses/BaseInputPin.h"
#include "baseclasses/BaseOutputPin.h"
#include "baseclasses/ComRef.h"
#include "filter/SceneDetectFilter.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <span>
#include <vector>

namespace scenedetect::testing_support {

/// A filter with one pin, made by the derived class.
template <typename Pin>
class OnePinFilter final : public CBaseFilter {
  public:
    OnePinFilter() : CBaseFilter(nullptr, nullptr, &m_lock, GUID_NULL), pin(this, &m_lock) {}
    int GetPinCount() override { return 1; }
    CBasePin* GetPin(int n) override { return n == 0 ? &pin : nullptr; }

  private:
    CCritSec m_lock;

  public:
    Pin pin;
};

/// Offers one type, from a memory allocator of its own.
class SourcePin final : public CBaseOutputPin {
  public:
    SourcePin(CBaseFilter* filter, CCritSec* lock)
        : CBaseOutputPin(nullptr, filter, lock, &m_result, L"Out") {}

    CMediaType type;
    ALLOCATOR_PROPERTIES properties{3, 4096, 1, 0};

    HRESULT CheckMediaType(const CMediaType*) override { return S_OK; }
    HRESULT GetMediaType(int position, CMediaType* offered) override {
        if (position != 0)
            return VFW_S_NO_MORE_ITEMS;
        *offered = type;
        return S_OK;
    }
    HRESULT DecideBufferSize(IMemAllocator* allocator, ALLOCATOR_PROPERTIES*) override {
        ALLOCATOR_PROPERTIES granted;
        return allocator->SetProperties(&properties, &granted);
    }

    HRESULT Send(std::span<const std::uint8_t> bytes, REFERENCE_TIME start, REFERENCE_TIME stop) {
        IMediaSample* raw = nullptr;
        const HRESULT hr = GetDeliveryBuffer(&raw, nullptr, nullptr, 0);
        if (FAILED(hr))
            return hr;
        const ComRef<IMediaSample> sample(raw);
        BYTE* data = nullptr;
        sample->GetPointer(&data);
        std::copy(bytes.begin(), bytes.end(), data);
        sample->SetActualDataLength(static_cast<LONG>(bytes.size()));
        sample->SetTime(&start, &stop);
        lastSent = sample.get();
        return Deliver(sample.get());
    }
    const void* lastSent = nullptr;

  private:
    HRESULT m_result = S_OK;
};

/// Takes everything and shows it to the test.
class SinkPin final : public CBaseInputPin {
  public:
    SinkPin(CBaseFilter* filter, CCritSec* lock) : CBaseInputPin(nullptr, filter, lock, &m_result, L"In") {}

    std::function<void(IMediaSample&)> seen;

    HRESULT CheckMediaType(const CMediaType*) override { return S_OK; }
    STDMETHODIMP Receive(IMediaSample* sample) override {
        const HRESULT hr = CBaseInputPin::Receive(sample);
        if (hr == S_OK && seen)
            seen(*sample);
        return hr;
    }

  private:
    HRESULT m_result = S_OK;
};

class Graph {
  public:
    Graph() {
        HRESULT hr = S_OK;
        filter = static_cast<SceneDetectFilter*>(SceneDetectFilter::CreateInstance(nullptr, &hr));
        EXPECT_EQ(hr, S_OK);
        for (CBaseFilter* one : Filters())
            one->AddRef();
    }
    ~Graph() {
        Stop();
        for (CBaseFilter* one : Filters())
            for (int i = 0; i < one->GetPinCount(); ++i)
                one->GetPin(i)->Disconnect();
        for (CBaseFilter* one : Filters())
            one->Release();
    }
    Graph(const Graph&) = delete;
    Graph& operator=(const Graph&) = delete;

    SceneDetectFilter* filter = nullptr;
    SourcePin& Source() const { return m_source->pin; }
    SinkPin& Sink() const { return m_sink->pin; }

    HRESULT ConnectInput(const CMediaType& type) {
        Source().type = type;
        return Source().Connect(filter->GetPin(0), nullptr);
    }
    HRESULT ConnectOutput() { return filter->GetPin(1)->Connect(&Sink(), nullptr); }

    void Run() {
        for (CBaseFilter* one : Filters())
            EXPECT_GE(one->Pause(), S_OK);
        for (CBaseFilter* one : Filters())
            EXPECT_GE(one->Run(0), S_OK);
    }
    void Stop() {
        for (CBaseFilter* one : Filters())
            one->Stop();
    }

  private:
    /// Downstream first, as a graph changes states.
    std::vector<CBaseFilter*> Filters() const { return {m_sink, filter, m_source}; }

    OnePinFilter<SourcePin>* m_source = new OnePinFilter<SourcePin>;
    OnePinFilter<SinkPin>* m_sink = new OnePinFilter<SinkPin>;
};

} // namespace scenedetect::testing_support
