// The filter between two pins of another make, and all that these may ask of it.
#pragma once

#include "baseclasses/ComRef.h"
#include "examples/Peer.h"
#include "tests/FilterStream.h"

#include <atomic>
#include <functional>
#include <string>
#include <vector>

namespace scenedetect::testing_support {

/// Upstream.
class SeekablePeer final : public Peer, public Seekable {
  public:
    SeekablePeer() : Peer(PINDIR_OUTPUT) {}

    STDMETHODIMP QueryInterface(REFIID riid, void** found) override {
        if (riid != IID_IMediaSeeking)
            return Peer::QueryInterface(riid, found);
        return *found = static_cast<IMediaSeeking*>(this), S_OK;
    }
    STDMETHODIMP_(ULONG) AddRef() override { return 2; }
    STDMETHODIMP_(ULONG) Release() override { return 1; }
};

/// Downstream: does within Receive what the test says.
class ReceivingPeer final : public Peer {
  public:
    ReceivingPeer() : Peer(PINDIR_INPUT) {}
    STDMETHODIMP Receive(IMediaSample*) override { return onSample(), S_OK; }
    std::function<void()> onSample = [] {};
};

/// A clock that counts its references.
class Clock final : public IReferenceClock {
  public:
    STDMETHODIMP QueryInterface(REFIID, void**) override { return E_NOINTERFACE; }
    STDMETHODIMP_(ULONG) AddRef() override { return static_cast<ULONG>(++references); }
    STDMETHODIMP_(ULONG) Release() override { return static_cast<ULONG>(--references); }
    STDMETHODIMP GetTime(REFERENCE_TIME*) override { return E_NOTIMPL; }
    STDMETHODIMP AdviseTime(REFERENCE_TIME, REFERENCE_TIME, HEVENT, DWORD_PTR*) override { return E_NOTIMPL; }
    STDMETHODIMP AdvisePeriodic(REFERENCE_TIME, REFERENCE_TIME, HSEMAPHORE, DWORD_PTR*) override {
        return E_NOTIMPL;
    }
    STDMETHODIMP Unadvise(DWORD_PTR) override { return E_NOTIMPL; }

    std::atomic<int> references = 1;
};

struct Question {
    std::string name;
    std::function<void()> ask;
    bool forStreamingThread = false; ///< no other thread may
};

struct Neighbourhood {
    explicit Neighbourhood(ComRef<IBaseFilter> made) : filter(std::move(made)) {
        IPin* pin = nullptr;
        EXPECT_EQ(filter->FindPin(L"In", &pin), S_OK);
        in.reset(pin);
        EXPECT_EQ(filter->FindPin(L"Out", &pin), S_OK);
        out.reset(pin);
        input = QueryFor<IMemInputPin>(in.get(), IID_IMemInputPin);
        seeking = QueryFor<IMediaSeeking>(out.get(), IID_IMediaSeeking);
        EXPECT_EQ(in->ReceiveConnection(&source, &type), S_OK);
        IMemAllocator* allocator = nullptr;
        EXPECT_EQ(input->GetAllocator(&allocator), S_OK);
        buffers.reset(allocator);
        ALLOCATOR_PROPERTIES wanted{2, kYuy2Bytes, 1, 0};
        ALLOCATOR_PROPERTIES actual{};
        EXPECT_EQ(buffers->SetProperties(&wanted, &actual), S_OK);
        EXPECT_EQ(input->NotifyAllocator(buffers.get(), FALSE), S_OK);
        EXPECT_EQ(out->Connect(&sink, &type), S_OK);
    }
    ~Neighbourhood() {
        filter->Stop();
        EXPECT_EQ(out->Disconnect(), S_OK);
        EXPECT_EQ(in->Disconnect(), S_OK);
        filter->SetSyncSource(nullptr);
        EXPECT_EQ(clock.references, 1);
    }
    Neighbourhood(const Neighbourhood&) = delete;
    Neighbourhood& operator=(const Neighbourhood&) = delete;

    /// Sends a sample, if the filter is not stopped; the filter's answer.
    HRESULT Send() {
        IMediaSample* raw = nullptr;
        const HRESULT hr = buffers->GetBuffer(&raw, nullptr, nullptr, AM_GBF_NOWAIT);
        return FAILED(hr) ? hr : input->Receive(ComRef<IMediaSample>(raw).get());
    }
    FILTER_STATE State() {
        FILTER_STATE state{};
        EXPECT_EQ(filter->GetState(0, &state), S_OK);
        return state;
    }
    /// Every method of IBaseFilter, of IPin on both sides and of IMediaSeeking, and what IMemInputPin can be
    /// asked.
    std::vector<Question> Questions();

    ComRef<IBaseFilter> filter;
    ComRef<IPin> in;
    ComRef<IPin> out;
    ComRef<IMemInputPin> input;
    ComRef<IMediaSeeking> seeking;
    ComRef<IMemAllocator> buffers;
    CMediaType type = Yuy2();
    SeekablePeer source;
    ReceivingPeer sink;
    Clock clock;
};

inline std::vector<Question> Neighbourhood::Questions() {
    std::vector<Question> all;
    const auto add = [&](const std::string& name, std::function<void()> ask,
                         bool forStreamingThread = false) {
        all.push_back({name, std::move(ask), forStreamingThread});
    };
    const auto release = [](auto*... objects) { ((objects ? objects->Release() : 0ul), ...); };
    IBaseFilter* f = filter.get();
    add("QueryInterface", [=] { EXPECT_TRUE(QueryFor<IPersist>(f, IID_IPersist)); });
    add("GetClassID", [=, id = CLSID()]() mutable { EXPECT_EQ(f->GetClassID(&id), S_OK); });
    add("Stop", [=] { EXPECT_EQ(f->Stop(), S_OK); });
    add("Pause", [=] { EXPECT_GE(f->Pause(), S_OK); });
    add("Run", [=] { EXPECT_GE(f->Run(0), S_OK); });
    add("GetState", [this] { State(); });
    add("SetSyncSource", [=, this] { EXPECT_EQ(f->SetSyncSource(&clock), S_OK); });
    add("GetSyncSource", [=] {
        IReferenceClock* found = nullptr;
        EXPECT_EQ(f->GetSyncSource(&found), S_OK);
        release(found);
    });
    add("EnumPins", [=] {
        IEnumPins* found = nullptr;
        IEnumPins* clone = nullptr;
        IPin* pins[2] = {};
        ULONG count = 0;
        ASSERT_EQ(f->EnumPins(&found), S_OK);
        EXPECT_EQ(found->Next(2, pins, &count), S_OK);
        EXPECT_EQ(found->Skip(1), S_FALSE);
        EXPECT_EQ(found->Reset(), S_OK);
        EXPECT_EQ(found->Clone(&clone), S_OK);
        release(pins[0], pins[1], clone, found);
    });
    add("FindPin", [=] {
        IPin* found = nullptr;
        EXPECT_EQ(f->FindPin(L"Out", &found), S_OK);
        release(found);
    });
    add("QueryFilterInfo",
        [=, info = FILTER_INFO()]() mutable { EXPECT_EQ(f->QueryFilterInfo(&info), S_OK); });
    add("JoinFilterGraph", [=] { EXPECT_EQ(f->JoinFilterGraph(nullptr, L"filter"), S_OK); });
    add("QueryVendorInfo",
        [=, text = LPWSTR()]() mutable { EXPECT_EQ(f->QueryVendorInfo(&text), E_NOTIMPL); });

    for (IPin* pin : {in.get(), out.get()}) {
        const std::string side = pin == in.get() ? "In." : "Out.";
        add(side + "Connect", [=, this] { EXPECT_TRUE(FAILED(pin->Connect(&sink, &type))); });
        add(side + "ReceiveConnection",
            [=, this] { EXPECT_TRUE(FAILED(pin->ReceiveConnection(&source, &type))); });
        // Also of a filter that is just being stopped: a sample is inside.
        add(
            side + "Disconnect", [=] { EXPECT_EQ(pin->Disconnect(), VFW_E_NOT_STOPPED); }, true);
        add(side + "ConnectedTo", [=] {
            IPin* peer = nullptr;
            EXPECT_EQ(pin->ConnectedTo(&peer), S_OK);
            release(peer);
        });
        add(side + "ConnectionMediaType", [=, this] {
            CMediaType found;
            EXPECT_EQ(pin->ConnectionMediaType(&found), S_OK);
            EXPECT_TRUE(found == type);
        });
        add(side + "QueryPinInfo", [=] {
            PIN_INFO info{};
            EXPECT_EQ(pin->QueryPinInfo(&info), S_OK);
            release(info.pFilter);
        });
        add(side + "QueryDirection",
            [=, d = PIN_DIRECTION()]() mutable { EXPECT_EQ(pin->QueryDirection(&d), S_OK); });
        add(side + "QueryId", [=] {
            LPWSTR id = nullptr;
            EXPECT_EQ(pin->QueryId(&id), S_OK);
            CoTaskMemFree(id);
        });
        add(side + "QueryAccept", [=, this] { EXPECT_EQ(pin->QueryAccept(&type), S_OK); });
        add(side + "EnumMediaTypes", [=] {
            IEnumMediaTypes* found = nullptr;
            IEnumMediaTypes* clone = nullptr;
            AM_MEDIA_TYPE* next = nullptr;
            if (FAILED(pin->EnumMediaTypes(&found)))
                return; // the input hands on the question, and this peer has no answer
            EXPECT_EQ(found->Next(1, &next, nullptr), S_OK);
            EXPECT_EQ(found->Reset(), S_OK);
            EXPECT_EQ(found->Skip(1), S_OK);
            EXPECT_EQ(found->Clone(&clone), S_OK);
            DeleteMediaType(next);
            release(clone, found);
        });
        add(side + "QueryInternalConnections",
            [=, n = ULONG()]() mutable { EXPECT_EQ(pin->QueryInternalConnections(nullptr, &n), E_NOTIMPL); });
        add(side + "EndOfStream", [=] { pin->EndOfStream(); });
        add(side + "BeginFlush", [=] { pin->BeginFlush(); });
        add(side + "EndFlush", [=] { pin->EndFlush(); });
        add(
            side + "NewSegment", [=] { pin->NewSegment(0, 1, 1.0); }, true);
    }
    add("ReceiveCanBlock", [this] { EXPECT_EQ(input->ReceiveCanBlock(), S_FALSE); });
    add("GetAllocatorRequirements", [this, wanted = ALLOCATOR_PROPERTIES()]() mutable {
        EXPECT_EQ(input->GetAllocatorRequirements(&wanted), E_NOTIMPL);
    });

    IMediaSeeking* s = seeking.get();
    const std::function<HRESULT()> seeks[] = {
        [=] { return s->GetCapabilities(nullptr); },
        [=] { return s->CheckCapabilities(nullptr); },
        [=] { return s->IsFormatSupported(nullptr); },
        [=] { return s->QueryPreferredFormat(nullptr); },
        [=] { return s->GetTimeFormat(nullptr); },
        [=] { return s->IsUsingTimeFormat(nullptr); },
        [=] { return s->SetTimeFormat(nullptr); },
        [=] { return s->GetDuration(nullptr); },
        [=] { return s->GetStopPosition(nullptr); },
        [=] { return s->GetCurrentPosition(nullptr); },
        [=] { return s->ConvertTimeFormat(nullptr, nullptr, 0, nullptr); },
        [=] { return s->SetPositions(nullptr, 0, nullptr, 0); },
        [=] { return s->GetPositions(nullptr, nullptr); },
        [=] { return s->GetAvailable(nullptr, nullptr); },
        [=] { return s->SetRate(2); },
        [=] { return s->GetRate(nullptr); },
        [=] { return s->GetPreroll(nullptr); },
    };
    for (const auto& seek : seeks)
        add("IMediaSeeking " + std::to_string(&seek - seeks), [seek] { EXPECT_EQ(seek(), S_OK); });
    return all;
}

} // namespace scenedetect::testing_support
