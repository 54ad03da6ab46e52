// A source, an in-place filter and a sink for the tests, which record what happens to them.
#pragma once

#include "baseclasses/streams.h"

#include <gtest/gtest.h>

#include <condition_variable>
#include <functional>
#include <mutex>
#include <utility>
#include <vector>

/// A video type of the subtype; `width` tells types of one subtype apart.
inline CMediaType VideoType(const GUID& subtype, LONG width = 320) {
    VIDEOINFOHEADER header = {};
    header.bmiHeader.biSize = sizeof(BITMAPINFOHEADER);
    header.bmiHeader.biWidth = width;
    CMediaType mt(&MEDIATYPE_Video);
    mt.SetSubtype(&subtype);
    mt.SetFormatType(&FORMAT_VideoInfo);
    mt.SetFormat(reinterpret_cast<const BYTE*>(&header), sizeof header);
    return mt;
}

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

class SourcePin : public CBaseOutputPin, public IMediaSeeking {
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
    STDMETHODIMP GetCapabilities(DWORD*) override { return E_NOTIMPL; }
    STDMETHODIMP CheckCapabilities(DWORD*) override { return E_NOTIMPL; }
    STDMETHODIMP IsFormatSupported(const GUID*) override { return E_NOTIMPL; }
    STDMETHODIMP QueryPreferredFormat(GUID*) override { return E_NOTIMPL; }
    STDMETHODIMP GetTimeFormat(GUID*) override { return E_NOTIMPL; }
    STDMETHODIMP IsUsingTimeFormat(const GUID*) override { return E_NOTIMPL; }
    STDMETHODIMP SetTimeFormat(const GUID*) override { return E_NOTIMPL; }
    STDMETHODIMP GetStopPosition(LONGLONG*) override { return E_NOTIMPL; }
    STDMETHODIMP GetCurrentPosition(LONGLONG*) override { return E_NOTIMPL; }
    STDMETHODIMP ConvertTimeFormat(LONGLONG*, const GUID*, LONGLONG, const GUID*) override {
        return E_NOTIMPL;
    }
    STDMETHODIMP GetPositions(LONGLONG*, LONGLONG*) override { return E_NOTIMPL; }
    STDMETHODIMP GetAvailable(LONGLONG*, LONGLONG*) override { return E_NOTIMPL; }
    STDMETHODIMP SetRate(double) override { return E_NOTIMPL; }
    STDMETHODIMP GetRate(double*) override { return E_NOTIMPL; }
    STDMETHODIMP GetPreroll(LONGLONG*) override { return E_NOTIMPL; }

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
        std::unique_lock lock(m_mutex);
        ++samples;
        last = sample;
        if (onSample)
            onSample(sample);
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

class InPlaceFilter : public CTransInPlaceFilter {
  public:
    explicit InPlaceFilter(LPUNKNOWN outer = nullptr, HRESULT* phr = nullptr, bool modifies = true)
        : CTransInPlaceFilter(NAME("test"), outer, GUID_NULL, phr, modifies) {
        GetPin(0);
    }

    HRESULT CheckInputType(const CMediaType* pmt) override { return types.Check(pmt); }
    HRESULT GetMediaType(int position, CMediaType* pmt) override { return types.Get(position, pmt); }
    HRESULT DecideBufferSize(IMemAllocator* allocator, ALLOCATOR_PROPERTIES* request) override {
        *request = {2, 16, request->cbAlign, request->cbPrefix};
        ALLOCATOR_PROPERTIES actual;
        return allocator->SetProperties(request, &actual);
    }
    HRESULT Transform(IMediaSample* sample) override {
        ++transforms;
        return onTransform ? onTransform(sample) : S_OK;
    }
    HRESULT SetMediaType(PIN_DIRECTION direction, const CMediaType* pmt) override {
        ++(direction == PINDIR_INPUT ? inputTypesSet : outputTypesSet);
        return CTransInPlaceFilter::SetMediaType(direction, pmt);
    }

    CTransInPlaceInputPin& In() const { return *InputPin(); }
    CTransInPlaceOutputPin& Out() const { return *OutputPin(); }

    TypeList types = {{VideoType(MEDIASUBTYPE_RGB24), VideoType(MEDIASUBTYPE_YUY2)}};
    std::function<HRESULT(IMediaSample*)> onTransform;
    int transforms = 0;
    int inputTypesSet = 0;
    int outputTypesSet = 0;
};

/// Source, filter and sink, each with one reference.
struct Chain {
    explicit Chain(bool modifies = true) : filter(new InPlaceFilter(nullptr, nullptr, modifies)) {
        source->AddRef();
        filter->AddRef();
        sink->AddRef();
    }
    ~Chain() {
        sink->Stop();
        filter->Stop();
        source->Stop();
        for (IPin* pin : {static_cast<IPin*>(&source->pin), static_cast<IPin*>(&filter->In()),
                          static_cast<IPin*>(&filter->Out()), static_cast<IPin*>(&sink->pin)})
            pin->Disconnect();
        EXPECT_EQ(sink->Release() + filter->Release() + source->Release(), 0u);
    }
    Chain(const Chain&) = delete;
    Chain& operator=(const Chain&) = delete;

    void Connect() {
        ASSERT_EQ(source->pin.Connect(&filter->In(), nullptr), S_OK);
        ASSERT_EQ(filter->Out().Connect(&sink->pin, &filter->In().CurrentMediaType()), S_OK);
    }
    void Pause() {
        ASSERT_EQ(sink->Pause(), S_OK);
        ASSERT_EQ(filter->Pause(), S_OK);
        ASSERT_EQ(source->Pause(), S_OK);
    }
    /// The next buffer of the source.
    ComRef<IMediaSample> Buffer() {
        IMediaSample* sample = nullptr;
        EXPECT_EQ(source->pin.GetDeliveryBuffer(&sample, nullptr, nullptr, 0), S_OK);
        return ComRef<IMediaSample>(sample);
    }
    HRESULT Send() { return source->pin.Deliver(Buffer().get()); }

    SourceFilter* source = new SourceFilter;
    InPlaceFilter* filter;
    SinkFilter* sink = new SinkFilter;
};

/// Keeps the reconnections asked of it for later, as a graph does, and the events it is sent.
class TestGraph : public CUnknown, public IFilterGraph2, public IMediaEventSink {
  public:
    TestGraph() : CUnknown(NAME("graph"), nullptr) {}

    DECLARE_IUNKNOWN
    STDMETHODIMP NonDelegatingQueryInterface(REFIID riid, void** ppv) override {
        if (riid == IID_IFilterGraph2)
            return GetInterface(static_cast<IFilterGraph2*>(this), ppv);
        if (riid == IID_IMediaEventSink)
            return GetInterface(static_cast<IMediaEventSink*>(this), ppv);
        return CUnknown::NonDelegatingQueryInterface(riid, ppv);
    }
    STDMETHODIMP ReconnectEx(IPin* pin, const AM_MEDIA_TYPE* pmt) override {
        reconnects.push_back({pin, *pmt});
        return S_OK;
    }
    void PerformReconnects() {
        for (const auto& [pin, mt] : std::exchange(reconnects, {})) {
            IPin* peer = nullptr;
            ASSERT_EQ(pin->ConnectedTo(&peer), S_OK);
            const ComRef<IPin> hold(peer);
            PIN_DIRECTION direction = PINDIR_INPUT;
            pin->QueryDirection(&direction);
            EXPECT_EQ(peer->Disconnect(), S_OK);
            EXPECT_EQ(pin->Disconnect(), S_OK);
            EXPECT_EQ(direction == PINDIR_INPUT ? peer->Connect(pin, &mt) : pin->Connect(peer, &mt), S_OK);
        }
    }
    STDMETHODIMP Notify(LONG code, LONG_PTR first, LONG_PTR) override {
        events.push_back({code, first});
        return S_OK;
    }

    STDMETHODIMP AddFilter(IBaseFilter*, LPCWSTR) override { return E_NOTIMPL; }
    STDMETHODIMP RemoveFilter(IBaseFilter*) override { return E_NOTIMPL; }
    STDMETHODIMP EnumFilters(IEnumFilters**) override { return E_NOTIMPL; }
    STDMETHODIMP FindFilterByName(LPCWSTR, IBaseFilter**) override { return E_NOTIMPL; }
    STDMETHODIMP ConnectDirect(IPin*, IPin*, const AM_MEDIA_TYPE*) override { return E_NOTIMPL; }
    STDMETHODIMP Reconnect(IPin*) override { return E_NOTIMPL; }
    STDMETHODIMP Disconnect(IPin*) override { return E_NOTIMPL; }
    STDMETHODIMP SetDefaultSyncSource() override { return E_NOTIMPL; }
    STDMETHODIMP Connect(IPin*, IPin*) override { return E_NOTIMPL; }
    STDMETHODIMP Render(IPin*) override { return E_NOTIMPL; }
    STDMETHODIMP RenderFile(LPCWSTR, LPCWSTR) override { return E_NOTIMPL; }
    STDMETHODIMP AddSourceFilter(LPCWSTR, LPCWSTR, IBaseFilter**) override { return E_NOTIMPL; }
    STDMETHODIMP SetLogFile(DWORD_PTR) override { return E_NOTIMPL; }
    STDMETHODIMP Abort() override { return E_NOTIMPL; }
    STDMETHODIMP ShouldOperationContinue() override { return E_NOTIMPL; }
    STDMETHODIMP AddSourceFilterForMoniker(IMoniker*, IBindCtx*, LPCWSTR, IBaseFilter**) override {
        return E_NOTIMPL;
    }
    STDMETHODIMP RenderEx(IPin*, DWORD, DWORD*) override { return E_NOTIMPL; }

    std::vector<std::pair<IPin*, CMediaType>> reconnects;
    std::vector<std::pair<LONG, LONG_PTR>> events;
};
