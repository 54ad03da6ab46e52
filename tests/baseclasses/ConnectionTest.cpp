#include "tests/Testing.h"
#include "tests/baseclasses/TestFilters.h"

namespace {

std::wstring TakeText(LPWSTR text) {
    std::wstring copy(text);
    CoTaskMemFree(text);
    return copy;
}

TypeList Only(const GUID& subtype) {
    return {{}, [subtype](const CMediaType& mt) { return *mt.Subtype() == subtype; }};
}

} // namespace

TEST(EnumPins, CountsSkipsAndClones) {
    Chain chain;
    IEnumPins* raw = nullptr;
    ASSERT_EQ(chain.filter->EnumPins(nullptr), E_POINTER);
    ASSERT_EQ(chain.filter->EnumPins(&raw), S_OK);
    const ComRef<IEnumPins> pins(raw);
    IPin* got[3] = {};
    ULONG fetched = 99;
    EXPECT_EQ(pins->Next(1, nullptr, &fetched), E_POINTER);
    EXPECT_EQ(pins->Next(2, got, nullptr), E_INVALIDARG);
    EXPECT_EQ(pins->Next(3, got, &fetched), S_FALSE);
    ASSERT_EQ(fetched, 2u);
    EXPECT_EQ(got[0], &chain.filter->In());
    EXPECT_EQ(got[1], &chain.filter->Out());
    got[0]->Release();
    got[1]->Release();
    EXPECT_EQ(pins->Next(1, got, &fetched), S_FALSE);
    EXPECT_EQ(fetched, 0u);

    EXPECT_EQ(pins->Reset(), S_OK);
    EXPECT_EQ(pins->Skip(3), S_FALSE);
    EXPECT_EQ(pins->Skip(1), S_OK);
    ASSERT_EQ(pins->Clone(&raw), S_OK);
    const ComRef<IEnumPins> clone(raw);
    EXPECT_EQ(clone->Next(1, got, nullptr), S_OK);
    EXPECT_EQ(got[0], &chain.filter->Out());
    got[0]->Release();
    EXPECT_EQ(clone->Skip(1), S_FALSE);
    EXPECT_EQ(pins->Clone(nullptr), E_POINTER);

    chain.filter->IncrementPinVersion();
    EXPECT_EQ(pins->Next(1, got, nullptr), VFW_E_ENUM_OUT_OF_SYNC);
    EXPECT_EQ(pins->Skip(1), VFW_E_ENUM_OUT_OF_SYNC);
    EXPECT_EQ(pins->Reset(), S_OK);
    EXPECT_EQ(pins->Skip(2), S_OK);
}

TEST(EnumMediaTypes, OutputOffersTheFiltersTypes) {
    Chain chain;
    IEnumMediaTypes* raw = nullptr;
    ASSERT_EQ(chain.filter->Out().EnumMediaTypes(&raw), S_OK);
    const ComRef<IEnumMediaTypes> types(raw);
    AM_MEDIA_TYPE* got[3] = {};
    ULONG fetched = 99;
    EXPECT_EQ(types->Next(1, nullptr, &fetched), E_POINTER);
    EXPECT_EQ(types->Next(2, got, nullptr), E_INVALIDARG);
    EXPECT_EQ(types->Next(3, got, &fetched), S_FALSE);
    ASSERT_EQ(fetched, 2u);
    EXPECT_EQ(got[0]->subtype, MEDIASUBTYPE_RGB24);
    EXPECT_EQ(got[1]->subtype, MEDIASUBTYPE_YUY2);
    DeleteMediaType(got[0]);
    DeleteMediaType(got[1]);
    EXPECT_EQ(types->Skip(1), S_FALSE);
    EXPECT_EQ(types->Reset(), S_OK);
    EXPECT_EQ(types->Skip(1), S_OK);
    ASSERT_EQ(types->Clone(&raw), S_OK);
    const ComRef<IEnumMediaTypes> clone(raw);
    EXPECT_EQ(clone->Next(1, got, nullptr), S_OK);
    EXPECT_EQ(got[0]->subtype, MEDIASUBTYPE_YUY2);
    DeleteMediaType(got[0]);
    EXPECT_EQ(types->Skip(0xFFFFFFFF), S_FALSE);
    EXPECT_EQ(types->Next(1, got, nullptr), S_FALSE);

    // The input offers what downstream would like.
    EXPECT_EQ(chain.filter->In().EnumMediaTypes(&raw), VFW_E_NOT_CONNECTED);
    EXPECT_EQ(raw, nullptr);
    chain.sink->pin.types.offered = {VideoType(MEDIASUBTYPE_UYVY)};
    chain.Connect();
    ASSERT_EQ(chain.filter->In().EnumMediaTypes(&raw), S_OK);
    const ComRef<IEnumMediaTypes> downstream(raw);
    ASSERT_EQ(downstream->Next(1, got, nullptr), S_OK);
    EXPECT_EQ(got[0]->subtype, MEDIASUBTYPE_UYVY);
    DeleteMediaType(got[0]);
}

TEST(Pins, AreFoundAndDescribed) {
    Chain chain;
    const struct {
        LPCWSTR id;
        IPin* pin;
    } cases[] = {
        {L"In", &chain.filter->In()}, {L"Out", &chain.filter->Out()}, {L"Input", nullptr}, {L"", nullptr}};
    for (const auto& c : cases) {
        IPin* found = chain.filter->GetPin(0);
        EXPECT_EQ(chain.filter->FindPin(c.id, &found), c.pin ? S_OK : VFW_E_NOT_FOUND);
        EXPECT_EQ(found, c.pin);
        if (!found)
            continue;
        LPWSTR id = nullptr;
        ASSERT_EQ(found->QueryId(&id), S_OK);
        EXPECT_EQ(TakeText(id), c.id);
        found->Release();
    }
    EXPECT_EQ(chain.filter->FindPin(nullptr, nullptr), E_POINTER);

    PIN_INFO info = {};
    ASSERT_EQ(chain.filter->Out().QueryPinInfo(&info), S_OK);
    EXPECT_EQ(info.pFilter, static_cast<IBaseFilter*>(chain.filter));
    EXPECT_EQ(info.dir, PINDIR_OUTPUT);
    EXPECT_EQ(std::wstring(info.achName), L"Output");
    EXPECT_EQ(info.pFilter->Release(), 3u);
    IPin* none = chain.filter->GetPin(0);
    EXPECT_EQ(chain.filter->Out().ConnectedTo(&none), VFW_E_NOT_CONNECTED);
    EXPECT_EQ(none, nullptr);
    ULONG count = 0;
    EXPECT_EQ(chain.filter->In().QueryInternalConnections(nullptr, &count), E_NOTIMPL);
}

TEST(Filter, KnowsItsGraphWithoutHoldingIt) {
    Chain chain;
    TestGraph graph;
    graph.NonDelegatingAddRef();
    const std::wstring longName(200, L'n');
    ASSERT_EQ(chain.filter->JoinFilterGraph(&graph, longName.c_str()), S_OK);
    FILTER_INFO info = {};
    ASSERT_EQ(chain.filter->QueryFilterInfo(&info), S_OK);
    EXPECT_EQ(std::wstring(info.achName), longName.substr(0, 127));
    EXPECT_EQ(info.pGraph, static_cast<IFilterGraph*>(&graph));
    EXPECT_EQ(info.pGraph->Release(), 1u);
    ASSERT_EQ(chain.filter->JoinFilterGraph(nullptr, nullptr), S_OK);
    ASSERT_EQ(chain.filter->QueryFilterInfo(&info), S_OK);
    EXPECT_EQ(info.pGraph, nullptr);
    EXPECT_EQ(chain.filter->NotifyEvent(EC_COMPLETE, 0, 0), E_NOTIMPL);
}

TEST(Connecting, AsksBothSidesForTypes) {
    CMediaType videoOnly(&MEDIATYPE_Video);
    CMediaType audioOnly(&MEDIATYPE_Audio);
    const CMediaType yuy2 = VideoType(MEDIASUBTYPE_YUY2);
    const struct {
        const char* name;
        const CMediaType* requested;
        TypeList source;
        TypeList filter;
        HRESULT result;
    } cases[] = {
        {"own offer", nullptr, {{yuy2}}, {}, S_OK},
        {"second offer", nullptr, {{VideoType(MEDIASUBTYPE_RGB8), yuy2}}, Only(MEDIASUBTYPE_YUY2), S_OK},
        {"nothing suits", nullptr, {{yuy2}}, Only(MEDIASUBTYPE_RGB8), VFW_E_NO_ACCEPTABLE_TYPES},
        {"exact type", &yuy2, {}, {}, S_OK},
        {"exact type refused by the receiver", &yuy2, {}, Only(MEDIASUBTYPE_RGB8), VFW_E_TYPE_NOT_ACCEPTED},
        {"exact type refused by the connector", &yuy2, Only(MEDIASUBTYPE_RGB8), {}, VFW_E_TYPE_NOT_ACCEPTED},
        {"partial type that fits an offer", &videoOnly, {{yuy2}}, {}, S_OK},
        {"partial type that fits none", &audioOnly, {{yuy2}}, {}, VFW_E_NO_ACCEPTABLE_TYPES},
    };
    for (const auto& c : cases) {
        Chain chain;
        chain.source->pin.types = c.source;
        chain.filter->types = c.filter;
        IPin* peer = nullptr;
        CMediaType mt;
        EXPECT_EQ(chain.source->pin.Connect(&chain.filter->In(), c.requested), c.result) << c.name;
        const bool connected = SUCCEEDED(c.result);
        EXPECT_EQ(chain.filter->In().ConnectedTo(&peer), connected ? S_OK : VFW_E_NOT_CONNECTED) << c.name;
        EXPECT_EQ(peer, connected ? &chain.source->pin : nullptr) << c.name;
        EXPECT_EQ(chain.source->pin.ConnectionMediaType(&mt), connected ? S_OK : VFW_E_NOT_CONNECTED)
            << c.name;
        EXPECT_TRUE(!connected || mt == yuy2) << c.name;
        EXPECT_TRUE(connected || chain.source->pin.Peer() == nullptr) << c.name;
        if (peer)
            peer->Release();
    }
}

TEST(Connecting, RefusesWhatCannotBe) {
    Chain chain;
    IPin* out = &chain.filter->Out();
    IPin* in = &chain.filter->In();
    const CMediaType mt = VideoType(MEDIASUBTYPE_YUY2);
    EXPECT_EQ(chain.source->pin.Connect(nullptr, nullptr), E_POINTER);
    EXPECT_EQ(in->ReceiveConnection(&chain.source->pin, nullptr), E_POINTER);
    EXPECT_EQ(out->Connect(&chain.sink->pin, &mt), E_UNEXPECTED); // input first
    EXPECT_EQ(chain.source->pin.Connect(out, &mt), VFW_E_INVALID_DIRECTION);
    EXPECT_EQ(in->Disconnect(), S_FALSE);

    ASSERT_EQ(chain.filter->Pause(), S_OK);
    EXPECT_EQ(chain.source->pin.Connect(in, &mt), VFW_E_NOT_STOPPED);
    EXPECT_EQ(out->Connect(&chain.sink->pin, &mt), VFW_E_NOT_STOPPED);
    EXPECT_EQ(in->Disconnect(), VFW_E_NOT_STOPPED);
    ASSERT_EQ(chain.filter->Stop(), S_OK);

    chain.Connect();
    EXPECT_EQ(chain.source->pin.Connect(in, &mt), VFW_E_ALREADY_CONNECTED);
    EXPECT_EQ(in->ReceiveConnection(&chain.source->pin, &mt), VFW_E_ALREADY_CONNECTED);
    EXPECT_EQ(in->Disconnect(), S_OK);
    EXPECT_EQ(in->Disconnect(), S_FALSE);
}

TEST(Connecting, TypesMustSuitTheWholeChain) {
    Chain chain;
    chain.Connect();
    EXPECT_EQ(chain.filter->In().QueryAccept(nullptr), E_POINTER);
    const CMediaType rgb = VideoType(MEDIASUBTYPE_RGB24);
    EXPECT_EQ(chain.filter->In().QueryAccept(&rgb), S_OK);
    EXPECT_EQ(chain.filter->Out().QueryAccept(&rgb), S_OK);
    chain.sink->pin.types = Only(MEDIASUBTYPE_YUY2);
    EXPECT_EQ(chain.filter->In().QueryAccept(&rgb), S_FALSE);
    chain.source->pin.types = Only(MEDIASUBTYPE_YUY2);
    EXPECT_EQ(chain.filter->Out().QueryAccept(&rgb), S_FALSE);
    EXPECT_EQ(chain.filter->inputTypesSet, 1);
    EXPECT_EQ(chain.filter->outputTypesSet, 1);
}

TEST(Connecting, AnotherTypeDownstreamNeedsAGraph) {
    for (const bool inGraph : {false, true}) {
        Chain chain;
        TestGraph graph;
        graph.NonDelegatingAddRef();
        if (inGraph)
            chain.filter->JoinFilterGraph(&graph, L"filter");
        const CMediaType rgb = VideoType(MEDIASUBTYPE_RGB24);
        ASSERT_EQ(chain.source->pin.Connect(&chain.filter->In(), nullptr), S_OK);
        EXPECT_EQ(chain.filter->Out().Connect(&chain.sink->pin, &rgb), inGraph ? S_OK : VFW_E_NOT_IN_GRAPH);
        EXPECT_EQ(chain.sink->pin.IsConnected(), inGraph);
        EXPECT_EQ(graph.reconnects.size(), inGraph ? 1u : 0u);
        graph.PerformReconnects();
        EXPECT_EQ(chain.filter->In().CurrentMediaType() == rgb, inGraph);
        EXPECT_TRUE(graph.reconnects.empty());
    }
}

TEST(Allocators, AreSharedUnlessSamplesMustBeCopied) {
    const struct {
        const char* name;
        bool readOnly;
        bool modifies;
        bool sinkInsists;
        bool inGraph;
        bool shared;
    } cases[] = {
        {"writable", false, true, false, false, true},
        {"writable, in a graph", false, true, false, true, true},
        {"read-only and modified", true, true, false, false, false},
        {"read-only and modified, in a graph", true, true, false, true, false},
        {"read-only and only looked at", true, false, false, false, true},
        {"read-only and only looked at, in a graph", true, false, false, true, true},
        {"sink wants its own", false, true, true, false, false},
        {"sink wants its own and upstream hears of it", false, true, true, true, true},
    };
    for (const auto& c : cases) {
        Chain chain(c.modifies);
        TestGraph graph;
        graph.NonDelegatingAddRef();
        if (c.inGraph)
            chain.filter->JoinFilterGraph(&graph, L"filter");
        chain.source->pin.readOnly = c.readOnly;
        chain.sink->pin.ownAllocatorOnly = c.sinkInsists;
        chain.Connect();
        graph.PerformReconnects();
        EXPECT_EQ(chain.filter->In().PeekAllocator(), chain.source->pin.Allocator()) << c.name;
        EXPECT_EQ(chain.filter->Out().PeekAllocator(), chain.sink->pin.Allocator()) << c.name;
        EXPECT_EQ(chain.source->pin.Allocator() == chain.sink->pin.Allocator(), c.shared) << c.name;
        // What downstream may do with the buffers: a copy is its own.
        EXPECT_EQ(chain.sink->pin.IsReadOnly(), c.readOnly && c.shared) << c.name;
    }
}

TEST(Allocators, ASharedOneThatTurnsReadOnlyIsNotCopiedOntoItself) {
    Chain chain;
    chain.Connect();
    IMemAllocator* shared = chain.source->pin.Allocator();
    ASSERT_EQ(chain.sink->pin.Allocator(), shared);
    EXPECT_EQ(chain.filter->In().NotifyAllocator(shared, TRUE), S_OK);
    EXPECT_EQ(chain.filter->In().PeekAllocator(), shared);
    EXPECT_NE(chain.sink->pin.Allocator(), shared);
    EXPECT_EQ(chain.filter->Out().PeekAllocator(), chain.sink->pin.Allocator());
}

TEST(Allocators, RequirementsReachUpstream) {
    Chain chain;
    chain.sink->pin.requiredAlignment = 64;
    ALLOCATOR_PROPERTIES props = {};
    EXPECT_EQ(chain.filter->In().GetAllocatorRequirements(&props), E_NOTIMPL);
    chain.Connect();
    EXPECT_EQ(chain.filter->In().GetAllocatorRequirements(&props), S_OK);
    EXPECT_EQ(props.cbAlign, 64);

    // Connecting upstream anew offers it the sink's allocator.
    chain.source->pin.Disconnect();
    chain.filter->In().Disconnect();
    ASSERT_EQ(chain.source->pin.Connect(&chain.filter->In(), nullptr), S_OK);
    ASSERT_EQ(chain.source->pin.Allocator()->GetProperties(&props), S_OK);
    EXPECT_EQ(props.cbAlign, 64);
    EXPECT_EQ(chain.source->pin.Allocator(), chain.sink->pin.Allocator());
}
