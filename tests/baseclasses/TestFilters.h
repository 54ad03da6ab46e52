// An in-place filter of the tests' own, and a graph that records what it is asked for.
#pragma once

#include "baseclasses/streams.h"
#include "tests/FilterStream.h"

#include <utility>

using namespace scenedetect::testing_support;

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

/// With an in-place filter between source and sink.
struct Chain : FilterStream {
    explicit Chain(bool modifies = true) : Chain(new InPlaceFilter(nullptr, nullptr, modifies)) {}

    InPlaceFilter* const filter;

  private:
    explicit Chain(InPlaceFilter* made)
        : FilterStream((made->AddRef(), ComRef<IBaseFilter>(made))), filter(made) {}
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
