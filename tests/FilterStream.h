// A source and a sink of the tests' own, which record what happens to them, around any filter.
#pragma once

#include "baseclasses/BaseFilter.h"
#include "baseclasses/BaseInputPin.h"
#include "baseclasses/BaseOutputPin.h"
#include "baseclasses/ComRef.h"
#include "tests/Testing.h"
#include "tests/TypeMaking.h"

#include <condition_variable>

namespace scenedetect::testing_support {

/// The types of a pin: those it offers, and which of any it takes.
struct TypeList {
    std::vector<CMediaType> offered;
    std::function<bool(const CMediaType&)> accepts = [](const CMediaType&) { return true; };

    HRESULT Check(const CMediaType* pmt) const { return accepts(*pmt) ? S_OK : S_FALSE; }
    HRESULT Get(int position, CMediaType* pmt) const {
        if (position >= static_cast<int>(offered.size()))
            return VFW_S_NO_MORE_ITEMS;
        return pmt->Set(offered[static_cast<std::size_t>(position)]);
    }
};

/// A filter with the one pin that its derived class makes.
class OnePinFilter : public CBaseFilter {
  public:
    OnePinFilter() : CBaseFilter(NAME("test"), nullptr, &m_lock, GUID_NULL) {}
    int GetPinCount() override { return 1; }
    CBasePin* GetPin(int n) override { return n == 0 ? OnlyPin() : nullptr; }

  protected:
    virtual CBasePin* OnlyPin() = 0;
    CCritSec m_lock;
};

/// Can be sought in.
class Seekable : public IMediaSeeking {
  public:
    STDMETHODIMP GetCapabilities(DWORD*) override { return S_OK; }
    STDMETHODIMP CheckCapabilities(DWORD*) override { return S_OK; }
    STDMETHODIMP IsFormatSupported(const GUID*) override { return S_OK; }
    STDMETHODIMP QueryPreferredFormat(GUID*) override { return S_OK; }
    STDMETHODIMP GetTimeFormat(GUID*) override { return S_OK; }
    STDMETHODIMP IsUsingTimeFormat(const GUID*) override { return S_OK; }
    STDMETHODIMP SetTimeFormat(const GUID*) override { return S_OK; }
    STDMETHODIMP GetDuration(LONGLONG*) override { return S_OK; }
    STDMETHODIMP GetStopPosition(LONGLONG*) override { return S_OK; }
    STDMETHODIMP GetCurrentPosition(LONGLONG*) override { return S_OK; }
    STDMETHODIMP ConvertTimeFormat(LONGLONG*, const GUID*, LONGLONG, const GUID*) override { return S_OK; }
    STDMETHODIMP SetPositions(LONGLONG*, DWORD, LONGLONG*, DWORD) override { return S_OK; }
    STDMETHODIMP GetPositions(LONGLONG*, LONGLONG*) override { return S_OK; }
    STDMETHODIMP GetAvailable(LONGLONG*, LONGLONG*) override { return S_OK; }
    STDMETHODIMP SetRate(double) override { return S_OK; }
    STDMETHODIMP GetRate(double*) override { return S_OK; }
    STDMETHODIMP GetPreroll(LONGLONG*) override { return S_OK; }
};

class SourcePin : public CBaseOutputPin, public Seekable {
  public:
    SourcePin(CBaseFilter* filter, CCritSec* lock)
        : CBaseOutputPin(NAME("pin"), filter, lock, nullptr, L"Source") {}

    DECLARE_IUNKNOWN
    STDMETHODIMP NonDelegatingQueryInterface(REFIID riid, void** ppv) override {
        if (riid == IID_IQualityControl && !takesQuality)
            return E_NOINTERFACE;
        if (riid == IID_IMediaSeeking)
            return GetInterface(static_cast<IMediaSeeking*>(this), ppv);
        return CBaseOutputPin::NonDelegatingQueryInterface(riid, ppv);
    }
    HRESULT CheckMediaType(const CMediaType* pmt) override { return types.Check(pmt); }
    HRESULT GetMediaType(int position, CMediaType* pmt) override { return types.Get(position, pmt); }
    HRESULT DecideBufferSize(IMemAllocator* allocator, ALLOCATOR_PROPERTIES* request) override {
        *request = {properties.cBuffers, properties.cbBuffer, request->cbAlign, request->cbPrefix};
        ALLOCATOR_PROPERTIES actual;
        return allocator->SetProperties(request, &actual);
    }
    HRESULT DecideAllocator(IMemInputPin* pin, IMemAllocator** allocator) override {
        if (!readOnly)
            return CBaseOutputPin::DecideAllocator(pin, allocator);
        HRESULT hr = InitAllocator(allocator);
        ALLOCATOR_PROPERTIES request = {0, 0, 1, 0};
        if (SUCCEEDED(hr))
            hr = DecideBufferSize(*allocator, &request);
        return FAILED(hr) ? hr : pin->NotifyAllocator(*allocator, TRUE);
    }
    STDMETHODIMP Notify(IBaseFilter* from, Quality q) override {
        qualityFrom = from;
        quality = q;
        return S_OK;
    }

    STDMETHODIMP SetPositions(LONGLONG* current, DWORD, LONGLONG* stop, DWORD flags) override {
        soughtCurrent = *current;
        soughtStop = *stop;
        soughtFlags = flags;
        return S_FALSE;
    }
    STDMETHODIMP GetDuration(LONGLONG* duration) override { return *duration = 12345, S_OK; }

    IMemAllocator* Allocator() const { return m_pAllocator; }
    IMemInputPin* Peer() const { return m_pInputPin; }

    TypeList types = {{VideoType(MEDIASUBTYPE_YUY2)}};
    ALLOCATOR_PROPERTIES properties = {3, 16, 1, 0}; // buffers and their size
    bool readOnly = false;
    bool takesQuality = true;
    IBaseFilter* qualityFrom = nullptr;
    Quality quality = {};
    LONGLONG soughtCurrent = 0;
    LONGLONG soughtStop = 0;
    DWORD soughtFlags = 0;
};

class SourceFilter : public OnePinFilter {
  public:
    SourcePin pin{this, &m_lock};

  protected:
    CBasePin* OnlyPin() override { return &pin; }
};

/// Records samples and events; can be made to block in Receive until it is flushed or stopped.
class SinkPin : public CBaseInputPin {
  public:
    SinkPin(CBaseFilter* filter, CCritSec* lock)
        : CBaseInputPin(NAME("pin"), filter, lock, nullptr, L"Sink") {}

    HRESULT CheckMediaType(const CMediaType* pmt) override { return types.Check(pmt); }
    HRESULT GetMediaType(int position, CMediaType* pmt) override { return types.Get(position, pmt); }
    STDMETHODIMP NotifyAllocator(IMemAllocator* allocator, BOOL isReadOnly) override {
        if (ownAllocatorOnly && allocator != m_pAllocator)
            return E_FAIL;
        return CBaseInputPin::NotifyAllocator(allocator, isReadOnly);
    }
    STDMETHODIMP GetAllocatorRequirements(ALLOCATOR_PROPERTIES* props) override {
        *props = {0, 0, requiredAlignment, 0};
        return S_OK;
    }
    STDMETHODIMP ReceiveCanBlock() override { return canBlock; }
    STDMETHODIMP Receive(IMediaSample* sample) override {
        const HRESULT hr = CBaseInputPin::Receive(sample);
        if (hr != S_OK)
            return hr;
        if (onSample)
            onSample(sample);
        std::unique_lock lock(m_mutex);
        ++samples;
        last = sample;
        m_changed.notify_all();
        m_changed.wait(lock, [&] { return !blocking || IsFlushing() || IsStopped(); });
        return result;
    }
    STDMETHODIMP EndOfStream() override { return ++ends, S_OK; }
    STDMETHODIMP BeginFlush() override {
        ++flushBegins;
        CBaseInputPin::BeginFlush();
        Wake();
        return S_OK;
    }
    STDMETHODIMP EndFlush() override { return ++flushEnds, CBaseInputPin::EndFlush(); }
    STDMETHODIMP NewSegment(REFERENCE_TIME start, REFERENCE_TIME stop, double rate) override {
        ++segments;
        return CBaseInputPin::NewSegment(start, stop, rate);
    }

    void Wake() {
        const std::lock_guard lock(m_mutex);
        m_changed.notify_all();
    }
    void WaitForSamples(int count) {
        std::unique_lock lock(m_mutex);
        m_changed.wait(lock, [&] { return samples >= count; });
    }
    IMemAllocator* Allocator() const { return m_pAllocator; }

    TypeList types;
    bool ownAllocatorOnly = false;
    LONG requiredAlignment = 1;
    HRESULT canBlock = S_FALSE;
    HRESULT result = S_OK;
    std::atomic<bool> blocking = false;
    std::function<void(IMediaSample*)> onSample;
    int samples = 0;
    IMediaSample* last = nullptr;
    int ends = 0;
    int flushBegins = 0;
    int flushEnds = 0;
    int segments = 0;

  private:
    std::mutex m_mutex;
    std::condition_variable m_changed;
};

class SinkFilter : public OnePinFilter {
  public:
    SinkPin pin{this, &m_lock};

    STDMETHODIMP Stop() override {
        const HRESULT hr = OnePinFilter::Stop();
        pin.Wake();
        return hr;
    }

  protected:
    CBasePin* OnlyPin() override { return &pin; }
};

/// A filter between source and sink. It may be the last to hold the filter: nothing else may outlive it.
struct FilterStream {
    static constexpr REFERENCE_TIME kFrame = 400000;

    explicit FilterStream(ComRef<IBaseFilter> made)
        : filter(std::move(made)), in(Pin(L"In")), out(Pin(L"Out")) {
        source->AddRef();
        sink->AddRef();
    }
    ~FilterStream() {
        Stop();
        for (IPin* pin :
             {static_cast<IPin*>(&source->pin), in.get(), out.get(), static_cast<IPin*>(&sink->pin)})
            pin->Disconnect();
        in.reset();
        out.reset();
        EXPECT_EQ(source->Release() + filter.release()->Release() + sink->Release(), 0u);
    }
    FilterStream(const FilterStream&) = delete;
    FilterStream& operator=(const FilterStream&) = delete;

    /// Both sides with one type.
    void Connect() {
        ASSERT_EQ(source->pin.Connect(in.get(), nullptr), S_OK);
        ASSERT_EQ(out->Connect(&sink->pin, &source->pin.CurrentMediaType()), S_OK);
    }
    /// Streaming begins with this.
    void Pause() {
        for (IMediaFilter* one : Filters())
            ASSERT_EQ(one->Pause(), S_OK);
    }
    /// Downstream first, as a graph does.
    void Stop() {
        for (IMediaFilter* one : Filters())
            one->Stop();
    }
    /// The next buffer of the source; none when it has stopped.
    ComRef<IMediaSample> Buffer() {
        IMediaSample* sample = nullptr;
        bufferResult = source->pin.GetDeliveryBuffer(&sample, nullptr, nullptr, 0);
        return ComRef<IMediaSample>(sample);
    }
    /// Delivers a sample with these bytes or, without any, as the buffer is; timed if `start` is not
    /// negative.
    HRESULT Send(const std::vector<std::uint8_t>& bytes = {}, REFERENCE_TIME start = -1) {
        const ComRef<IMediaSample> sample = Buffer();
        if (!sample)
            return bufferResult;
        BYTE* data = nullptr;
        sample->GetPointer(&data);
        std::copy(bytes.begin(), bytes.end(), data);
        REFERENCE_TIME stop = start + kFrame;
        if (start >= 0)
            sample->SetTime(&start, &stop);
        lastSent = sample.get();
        return source->pin.Deliver(sample.get());
    }

    ComRef<IBaseFilter> filter;
    ComRef<IPin> in;
    ComRef<IPin> out;
    SourceFilter* source = new SourceFilter;
    SinkFilter* sink = new SinkFilter;
    const IMediaSample* lastSent = nullptr;
    HRESULT bufferResult = S_OK;

  private:
    ComRef<IPin> Pin(const wchar_t* id) const {
        IPin* pin = nullptr;
        EXPECT_EQ(filter->FindPin(id, &pin), S_OK);
        return ComRef<IPin>(pin);
    }
    std::vector<IMediaFilter*> Filters() const { return {sink, filter.get(), source}; }
};

} // namespace scenedetect::testing_support
