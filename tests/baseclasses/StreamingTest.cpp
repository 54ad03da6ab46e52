#include "tests/Testing.h"
#include "tests/baseclasses/TestFilters.h"

namespace {

bool IsCommitted(IMemAllocator* allocator) {
    IMediaSample* sample = nullptr;
    const HRESULT hr = allocator->GetBuffer(&sample, nullptr, nullptr, AM_GBF_NOWAIT);
    if (sample)
        sample->Release();
    return hr != VFW_E_NOT_COMMITTED;
}

} // namespace

TEST(States, FollowEveryOrderOfCalls) {
    enum class Pins { None, InputOnly, Both };
    for (const Pins pins : {Pins::None, Pins::InputOnly, Pins::Both}) {
        Chain chain;
        if (pins == Pins::Both)
            chain.Connect();
        else if (pins == Pins::InputOnly)
            chain.source->pin.Connect(&chain.filter->In(), nullptr);
        for (const char call : std::string("srprpsrsppsrrss")) {
            FILTER_STATE expected = State_Stopped;
            if (call == 's') {
                EXPECT_EQ(chain.filter->Stop(), S_OK);
            } else if (call == 'p') {
                EXPECT_EQ(chain.filter->Pause(), S_OK);
                expected = State_Paused;
            } else {
                EXPECT_EQ(chain.filter->Run(0), S_OK);
                expected = State_Running;
            }
            FILTER_STATE state = State_Stopped;
            EXPECT_EQ(chain.filter->GetState(0, &state), S_OK);
            EXPECT_EQ(state, expected);
            if (pins == Pins::Both) {
                EXPECT_EQ(IsCommitted(chain.source->pin.Allocator()), state != State_Stopped);
            }
        }
    }
}

TEST(States, AFailedPauseLeavesNothingCommitted) {
    struct TwoPins : OnePinFilter {
        SourcePin first{this, &m_lock};
        SourcePin second{this, &m_lock};
        int GetPinCount() override { return 2; }
        CBasePin* GetPin(int n) override { return n == 0 ? &first : &second; }
        CBasePin* OnlyPin() override { return &first; }
    };
    TwoPins source;
    SinkFilter sinks[2];
    for (CBaseFilter* filter : {static_cast<CBaseFilter*>(&source), static_cast<CBaseFilter*>(&sinks[0]),
                                static_cast<CBaseFilter*>(&sinks[1])})
        filter->AddRef();
    ASSERT_EQ(source.first.Connect(&sinks[0].pin, nullptr), S_OK);
    ASSERT_EQ(source.second.Connect(&sinks[1].pin, nullptr), S_OK);
    ALLOCATOR_PROPERTIES none = {0, 0, 1, 0};
    ALLOCATOR_PROPERTIES actual;
    ASSERT_EQ(source.second.Allocator()->SetProperties(&none, &actual), S_OK);
    EXPECT_EQ(source.Pause(), VFW_E_SIZENOTSET);
    EXPECT_TRUE(source.IsStopped());
    EXPECT_FALSE(IsCommitted(source.first.Allocator()));
    for (CBasePin* pin : {static_cast<CBasePin*>(&source.first), static_cast<CBasePin*>(&source.second),
                          static_cast<CBasePin*>(&sinks[0].pin), static_cast<CBasePin*>(&sinks[1].pin)})
        EXPECT_EQ(pin->Disconnect(), S_OK);
}

TEST(Streaming, ACopyIsExact) {
    Chain chain;
    chain.source->pin.readOnly = true;
    chain.Connect();
    chain.Pause();
    const CMediaType mt = VideoType(MEDIASUBTYPE_UYVY);
    const auto sample = chain.Buffer();
    BYTE* data = nullptr;
    sample->GetPointer(&data);
    for (BYTE n = 0; n < 16; ++n)
        data[n] = n;
    REFERENCE_TIME start = 10;
    REFERENCE_TIME stop = 20;
    LONGLONG mediaStart = 3;
    LONGLONG mediaStop = 4;
    sample->SetTime(&start, &stop);
    sample->SetMediaTime(&mediaStart, &mediaStop);
    sample->SetDiscontinuity(TRUE);
    sample->SetPreroll(TRUE);
    sample->SetActualDataLength(13);
    CMediaType attached = mt;
    sample->SetMediaType(&attached);
    chain.filter->onTransform = [](IMediaSample* copy) {
        BYTE* bytes = nullptr;
        copy->GetPointer(&bytes);
        bytes[0] = 99; // the copy is writable, the original is not
        return S_OK;
    };
    chain.sink->pin.onSample = [&](IMediaSample* copy) {
        EXPECT_NE(copy, sample.get());
        BYTE* bytes = nullptr;
        copy->GetPointer(&bytes);
        EXPECT_EQ(bytes[0], 99);
        EXPECT_TRUE(std::equal(data + 1, data + 13, bytes + 1));
        EXPECT_EQ(copy->GetActualDataLength(), 13);
        start = stop = mediaStart = mediaStop = 0;
        EXPECT_EQ(copy->GetTime(&start, &stop), S_OK);
        EXPECT_EQ(copy->GetMediaTime(&mediaStart, &mediaStop), S_OK);
        EXPECT_EQ(std::vector<LONGLONG>({start, stop, mediaStart, mediaStop}),
                  std::vector<LONGLONG>({10, 20, 3, 4}));
        EXPECT_EQ(copy->IsDiscontinuity(), S_OK);
        EXPECT_EQ(copy->IsPreroll(), S_OK);
        EXPECT_EQ(copy->IsSyncPoint(), S_FALSE);
        AM_MEDIA_TYPE* type = nullptr;
        ASSERT_EQ(copy->GetMediaType(&type), S_OK);
        EXPECT_TRUE(CMediaType(*type) == mt);
        DeleteMediaType(type);
    };
    ASSERT_EQ(chain.source->pin.Deliver(sample.get()), S_OK);
    EXPECT_EQ(chain.sink->pin.samples, 1);
    EXPECT_EQ(data[0], 0);

    // Downstream can't change the type of a running stream that is copied.
    EXPECT_EQ(chain.filter->Out().QueryAccept(&mt), S_FALSE);
    EXPECT_EQ(chain.filter->Out().QueryAccept(&chain.filter->Out().CurrentMediaType()), S_OK);
}

// Buffers of this one bring along a type, as they do when downstream asks for another.
class TypedAllocator : public CMemAllocator {
  public:
    using CMemAllocator::CMemAllocator;
    STDMETHODIMP GetBuffer(IMediaSample** sample, REFERENCE_TIME* start, REFERENCE_TIME* stop,
                           DWORD flags) override {
        const HRESULT hr = CMemAllocator::GetBuffer(sample, start, stop, flags);
        CMediaType mt = VideoType(MEDIASUBTYPE_UYVY);
        return FAILED(hr) ? hr : (*sample)->SetMediaType(&mt);
    }
};

TEST(Streaming, ACopyHasNoTypeUnlessTheSampleHasOne) {
    Chain chain;
    HRESULT hr = S_OK;
    ASSERT_EQ(chain.sink->pin.NotifyAllocator(new TypedAllocator(NAME("typed"), nullptr, &hr), FALSE), S_OK);
    chain.sink->pin.ownAllocatorOnly = true;
    chain.Connect();
    chain.Pause();
    chain.sink->pin.onSample = [](IMediaSample* copy) {
        AM_MEDIA_TYPE* type = nullptr;
        EXPECT_EQ(copy->GetMediaType(&type), S_FALSE);
        DeleteMediaType(type);
    };
    EXPECT_EQ(chain.Send(), S_OK);
    EXPECT_EQ(chain.sink->pin.samples, 1);
}

TEST(Streaming, SamplesAreTakenOnlyInTheRightState) {
    Chain chain;
    ASSERT_EQ(chain.source->pin.Connect(&chain.filter->In(), nullptr), S_OK);
    chain.source->Pause();
    const auto sample = chain.Buffer();
    CTransInPlaceInputPin& in = chain.filter->In();
    EXPECT_EQ(in.Receive(nullptr), E_POINTER);
    EXPECT_EQ(in.Receive(sample.get()), VFW_E_NOT_CONNECTED); // no output
    EXPECT_EQ(in.BeginFlush(), VFW_E_NOT_CONNECTED);
    ASSERT_EQ(chain.filter->Out().Connect(&chain.sink->pin, &in.CurrentMediaType()), S_OK);
    EXPECT_EQ(in.Receive(sample.get()), VFW_E_WRONG_STATE);
    EXPECT_EQ(in.EndOfStream(), VFW_E_WRONG_STATE);
    chain.Pause();
    EXPECT_EQ(in.Receive(sample.get()), S_OK);
    ASSERT_EQ(chain.filter->Stop(), S_OK);
    EXPECT_EQ(in.Receive(sample.get()), VFW_E_WRONG_STATE);
    EXPECT_EQ(chain.sink->pin.samples, 1);
    EXPECT_EQ(chain.sink->pin.ends, 0);
}

TEST(Streaming, EventsAreForwardedOnce) {
    Chain chain;
    chain.Connect();
    chain.Pause();
    IPin* in = &chain.filter->In();
    SinkPin& sink = chain.sink->pin;
    EXPECT_EQ(in->NewSegment(5, 6, 2.0), S_OK);
    EXPECT_EQ(sink.segments, 1);
    EXPECT_EQ(sink.CurrentStopTime(), 6);
    EXPECT_EQ(chain.filter->In().CurrentRate(), 2.0);
    EXPECT_EQ(in->BeginFlush(), S_OK);
    EXPECT_EQ(sink.flushBegins, 1);
    EXPECT_EQ(chain.Send(), S_FALSE);
    EXPECT_EQ(in->EndOfStream(), S_FALSE);
    EXPECT_EQ(in->EndFlush(), S_OK);
    EXPECT_EQ(sink.flushEnds, 1);
    EXPECT_EQ(chain.Send(), S_OK);
    EXPECT_EQ(in->EndOfStream(), S_OK);
    EXPECT_EQ(sink.ends, 1);
    EXPECT_EQ(sink.samples, 1);
    EXPECT_EQ(chain.filter->Out().EndOfStream(), E_UNEXPECTED);
    EXPECT_EQ(chain.filter->Out().BeginFlush(), E_UNEXPECTED);

    // Stopping ends a flush that was never ended.
    EXPECT_EQ(in->BeginFlush(), S_OK);
    for (CBaseFilter* filter :
         {static_cast<CBaseFilter*>(chain.sink), static_cast<CBaseFilter*>(chain.filter)})
        EXPECT_EQ(filter->Stop(), S_OK);
    chain.Pause();
    EXPECT_EQ(chain.Send(), S_OK);
}

TEST(Streaming, AnOutputWithoutInputEndsTheStream) {
    Chain chain;
    chain.Connect();
    chain.source->pin.Disconnect();
    chain.filter->In().Disconnect();
    chain.sink->Pause();
    for (int n = 0; n < 2; ++n)
        EXPECT_EQ(chain.filter->Pause(), S_OK);
    EXPECT_EQ(chain.filter->Run(0), S_OK);
    EXPECT_EQ(chain.filter->Pause(), S_OK);
    EXPECT_EQ(chain.sink->pin.ends, 1);
    chain.filter->Stop();
    chain.filter->Pause();
    EXPECT_EQ(chain.sink->pin.ends, 2);
}

TEST(Streaming, TransformDecidesWhatGoesOn) {
    const struct {
        const char* name;
        std::function<HRESULT(IMediaSample*)> transform;
        HRESULT result;
        int delivered;
        std::size_t events;
    } cases[] = {
        {"deliver", [](IMediaSample*) { return S_OK; }, S_OK, 2, 0},
        {"drop", [](IMediaSample*) { return S_FALSE; }, S_OK, 0, 1},
        {"fail", [](IMediaSample*) { return E_FAIL; }, E_FAIL, 0, 0},
        {"no memory", [](IMediaSample*) -> HRESULT { throw std::bad_alloc(); }, E_OUTOFMEMORY, 0, 0},
        {"throw", [](IMediaSample*) -> HRESULT { throw std::runtime_error("no"); }, E_FAIL, 0, 0},
    };
    for (const bool copying : {false, true}) {
        for (const auto& c : cases) {
            Chain chain;
            TestGraph graph;
            graph.NonDelegatingAddRef();
            chain.source->pin.readOnly = copying;
            chain.filter->JoinFilterGraph(&graph, L"filter");
            chain.Connect();
            chain.Pause();
            chain.filter->onTransform = c.transform;
            EXPECT_EQ(chain.Send(), c.result) << c.name;
            EXPECT_EQ(chain.Send(), c.result) << c.name;
            EXPECT_EQ(chain.sink->pin.samples, c.delivered) << c.name;
            ASSERT_EQ(graph.events.size(), c.events) << c.name;
            if (c.events != 0) {
                EXPECT_EQ(graph.events[0].first, EC_QUALITY_CHANGE);
            }
        }
    }
}

TEST(Streaming, StreamControlSamplesBypassTheFilter) {
    Chain chain;
    chain.Connect();
    chain.Pause();
    const auto sample = chain.Buffer();
    AM_SAMPLE2_PROPERTIES props = {};
    const auto sample2 = QueryFor<IMediaSample2>(sample.get(), IID_IMediaSample2);
    sample2->GetProperties(offsetof(AM_SAMPLE2_PROPERTIES, pMediaType), reinterpret_cast<BYTE*>(&props));
    props.dwStreamId = AM_STREAM_CONTROL;
    sample2->SetProperties(offsetof(AM_SAMPLE2_PROPERTIES, pMediaType),
                           reinterpret_cast<const BYTE*>(&props));
    EXPECT_EQ(chain.source->pin.Deliver(sample.get()), S_OK);
    EXPECT_EQ(chain.filter->transforms, 0);
    EXPECT_EQ(chain.sink->pin.last, sample.get());
}

TEST(Streaming, ATypeThatComesWithASampleIsChecked) {
    Chain chain;
    TestGraph graph;
    graph.NonDelegatingAddRef();
    chain.filter->JoinFilterGraph(&graph, L"filter");
    chain.Connect();
    chain.Pause();
    chain.filter->types.accepts = [](const CMediaType& mt) { return *mt.Subtype() != MEDIASUBTYPE_RGB8; };
    CMediaType good = VideoType(MEDIASUBTYPE_UYVY);
    CMediaType bad = VideoType(MEDIASUBTYPE_RGB8);
    const CMediaType before = chain.filter->In().CurrentMediaType();

    auto sample = chain.Buffer();
    sample->SetMediaType(&good);
    EXPECT_EQ(chain.source->pin.Deliver(sample.get()), S_OK);
    EXPECT_EQ(chain.sink->pin.samples, 1);
    // Taking it over is the filter's business.
    EXPECT_TRUE(chain.filter->In().CurrentMediaType() == before);

    sample->SetMediaType(&bad);
    EXPECT_EQ(chain.source->pin.Deliver(sample.get()), VFW_E_INVALIDMEDIATYPE);
    ASSERT_EQ(graph.events.size(), 1u);
    EXPECT_EQ(graph.events[0], (std::pair<LONG, LONG_PTR>(EC_ERRORABORT, VFW_E_TYPE_NOT_ACCEPTED)));
    EXPECT_EQ(chain.sink->pin.ends, 1);
    EXPECT_EQ(chain.sink->pin.samples, 1);
    EXPECT_EQ(chain.Send(), VFW_E_RUNTIME_ERROR);
    chain.filter->In().BeginFlush();
    chain.filter->In().EndFlush();
    EXPECT_EQ(chain.Send(), S_OK);
}

TEST(Streaming, SeveralSamplesStopAtTheFirstRefusal) {
    Chain chain;
    chain.Connect();
    chain.Pause();
    const auto first = chain.Buffer();
    const auto second = chain.Buffer();
    IMediaSample* samples[] = {first.get(), second.get()};
    LONG done = 99;
    EXPECT_EQ(chain.filter->In().ReceiveMultiple(samples, 2, &done), S_OK);
    EXPECT_EQ(done, 2);
    chain.sink->pin.result = S_FALSE;
    EXPECT_EQ(chain.filter->In().ReceiveMultiple(samples, 2, &done), S_FALSE);
    EXPECT_EQ(done, 0);
    EXPECT_EQ(chain.filter->In().ReceiveMultiple(nullptr, 2, &done), E_POINTER);
    EXPECT_EQ(chain.filter->In().ReceiveMultiple(samples, 0, &done), S_OK);
}

TEST(Streaming, BlockingIsDecidedDownstream) {
    Chain chain;
    EXPECT_EQ(chain.filter->In().ReceiveCanBlock(), S_OK);
    chain.Connect();
    EXPECT_EQ(chain.filter->In().ReceiveCanBlock(), S_FALSE);
    chain.sink->pin.canBlock = S_OK;
    EXPECT_EQ(chain.filter->In().ReceiveCanBlock(), S_OK);
}

TEST(QualityMessages, GoToTheSinkOrUpstream) {
    Chain chain;
    const Quality q = {Flood, 500, 1, 2};
    EXPECT_EQ(chain.filter->Out().Notify(chain.sink, q), VFW_E_NOT_FOUND);
    chain.source->pin.takesQuality = false;
    chain.Connect();
    EXPECT_EQ(chain.filter->Out().Notify(chain.sink, q), VFW_E_NOT_FOUND);
    chain.source->pin.takesQuality = true;
    EXPECT_EQ(chain.filter->Out().Notify(chain.sink, q), S_OK);
    EXPECT_EQ(chain.source->pin.qualityFrom, static_cast<IBaseFilter*>(chain.filter));
    EXPECT_EQ(chain.source->pin.quality.Proportion, 500);

    SourceFilter sink;
    chain.source->pin.qualityFrom = nullptr;
    EXPECT_EQ(chain.filter->In().SetSink(&sink.pin), S_OK);
    EXPECT_EQ(chain.filter->Out().Notify(chain.sink, q), S_OK);
    EXPECT_EQ(sink.pin.qualityFrom, static_cast<IBaseFilter*>(chain.filter));
    EXPECT_EQ(chain.source->pin.qualityFrom, nullptr);
    chain.filter->In().SetSink(nullptr);
}

TEST(Seeking, IsPassedUpstream) {
    Chain chain;
    IUnknown* out = static_cast<IPin*>(&chain.filter->Out());
    const auto seeking = QueryFor<IMediaSeeking>(out, IID_IMediaSeeking);
    const auto position = QueryFor<IMediaPosition>(out, IID_IMediaPosition);
    ASSERT_TRUE(seeking && position);
    LONGLONG duration = 0;
    EXPECT_EQ(seeking->GetDuration(&duration), E_NOTIMPL);
    chain.Connect();
    EXPECT_EQ(seeking->GetDuration(&duration), S_OK);
    EXPECT_EQ(duration, 12345);
    LONGLONG current = 1;
    LONGLONG stop = 2;
    EXPECT_EQ(seeking->SetPositions(&current, 0, &stop, AM_SEEKING_AbsolutePositioning), S_FALSE);
    EXPECT_EQ(chain.source->pin.soughtCurrent, 1);
    EXPECT_EQ(chain.source->pin.soughtStop, 2);
    EXPECT_EQ(chain.source->pin.soughtFlags, static_cast<DWORD>(AM_SEEKING_AbsolutePositioning));
    REFTIME seconds = 0;
    EXPECT_EQ(position->get_Duration(&seconds), E_NOTIMPL); // the source has no such interface
}
