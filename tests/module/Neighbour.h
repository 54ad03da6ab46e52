// What filters beside the module's filter may ask of it, at any time and on any thread.
#pragma once

#include "tests/SceneStream.h"

namespace scenedetect::testing_support {

struct Question {
    std::string name;
    std::function<void()> ask;
    bool forStreamingThread = false; ///< no other thread may
};

/// Every method of IBaseFilter, of IPin on both sides, what IMemInputPin can be asked, and a few of
/// IMediaSeeking, which are forwarded alike. What they answer is for others to check.
inline std::vector<Question> QuestionsTo(SceneStream& stream) {
    std::vector<Question> all;
    const auto add = [&](const std::string& name, std::function<void()> ask,
                         bool forStreamingThread = false) {
        all.push_back({name, std::move(ask), forStreamingThread});
    };
    const auto release = [](auto*... objects) { ((objects ? objects->Release() : 0ul), ...); };
    IBaseFilter* f = stream.filter.get();
    add("QueryInterface", [=] { EXPECT_TRUE(QueryFor<IPersist>(f, IID_IPersist)); });
    add("GetClassID", [=] {
        CLSID id{};
        f->GetClassID(&id);
    });
    add("Stop", [=] { EXPECT_EQ(f->Stop(), S_OK); });
    add("Pause", [=] { EXPECT_GE(f->Pause(), S_OK); });
    add("Run", [=] { EXPECT_GE(f->Run(0), S_OK); });
    add("GetState", [=] {
        FILTER_STATE state{};
        f->GetState(0, &state);
    });
    add("SetSyncSource", [=] { f->SetSyncSource(nullptr); });
    add("GetSyncSource", [=] {
        IReferenceClock* found = nullptr;
        f->GetSyncSource(&found);
        release(found);
    });
    add("EnumPins", [=] {
        IEnumPins* found = nullptr;
        IPin* pins[2] = {};
        ULONG count = 0;
        ASSERT_EQ(f->EnumPins(&found), S_OK);
        EXPECT_EQ(found->Next(2, pins, &count), S_OK);
        release(pins[0], pins[1], found);
    });
    add("FindPin", [=] {
        IPin* found = nullptr;
        f->FindPin(L"Out", &found);
        release(found);
    });
    add("QueryFilterInfo", [=] {
        FILTER_INFO info{};
        f->QueryFilterInfo(&info);
    });
    add("JoinFilterGraph", [=] { f->JoinFilterGraph(nullptr, L"filter"); });
    add("QueryVendorInfo", [=] {
        LPWSTR text{};
        f->QueryVendorInfo(&text);
    });

    const CMediaType type = Yuy2();
    IPin* const source = &stream.source->pin;
    IPin* const sink = &stream.sink->pin;
    for (IPin* pin : {stream.in.get(), stream.out.get()}) {
        const std::string side = pin == stream.in.get() ? "In." : "Out.";
        add(side + "Connect", [=] { EXPECT_TRUE(FAILED(pin->Connect(sink, &type))); });
        add(side + "ReceiveConnection", [=] { EXPECT_TRUE(FAILED(pin->ReceiveConnection(source, &type))); });
        // Also of a filter that is just being stopped: a sample is inside.
        add(
            side + "Disconnect", [=] { EXPECT_EQ(pin->Disconnect(), VFW_E_NOT_STOPPED); }, true);
        add(side + "ConnectedTo", [=] {
            IPin* peer = nullptr;
            EXPECT_EQ(pin->ConnectedTo(&peer), S_OK);
            release(peer);
        });
        add(side + "ConnectionMediaType", [=] {
            CMediaType found;
            EXPECT_EQ(pin->ConnectionMediaType(&found), S_OK);
            EXPECT_EQ(*found.Subtype(), *type.Subtype());
        });
        add(side + "QueryPinInfo", [=] {
            PIN_INFO info{};
            pin->QueryPinInfo(&info);
            release(info.pFilter);
        });
        add(side + "QueryDirection", [=] {
            PIN_DIRECTION d{};
            pin->QueryDirection(&d);
        });
        add(side + "QueryId", [=] {
            LPWSTR id = nullptr;
            pin->QueryId(&id);
            CoTaskMemFree(id);
        });
        add(side + "QueryAccept", [=] { EXPECT_EQ(pin->QueryAccept(&type), S_OK); });
        add(side + "EnumMediaTypes", [=] {
            IEnumMediaTypes* found = nullptr;
            AM_MEDIA_TYPE* next = nullptr;
            ASSERT_EQ(pin->EnumMediaTypes(&found), S_OK);
            found->Next(1, &next, nullptr);
            DeleteMediaType(next);
            release(found);
        });
        add(side + "QueryInternalConnections", [=] {
            ULONG n{};
            pin->QueryInternalConnections(nullptr, &n);
        });
        add(side + "EndOfStream", [=] { pin->EndOfStream(); });
        add(side + "BeginFlush", [=] { pin->BeginFlush(); });
        add(side + "EndFlush", [=] { pin->EndFlush(); });
        add(
            side + "NewSegment", [=] { pin->NewSegment(0, 1, 1.0); }, true);
    }
    const std::shared_ptr input = QueryFor<IMemInputPin>(stream.in.get(), IID_IMemInputPin);
    add("ReceiveCanBlock", [=] { EXPECT_EQ(input->ReceiveCanBlock(), S_FALSE); });
    add("GetAllocatorRequirements", [=] {
        ALLOCATOR_PROPERTIES wanted{};
        input->GetAllocatorRequirements(&wanted);
    });
    const std::shared_ptr seeking = QueryFor<IMediaSeeking>(stream.out.get(), IID_IMediaSeeking);
    add("SetRate", [=] { EXPECT_EQ(seeking->SetRate(2), S_OK); });
    add("GetDuration", [=] {
        LONGLONG n{};
        EXPECT_EQ(seeking->GetDuration(&n), S_OK);
    });
    return all;
}

} // namespace scenedetect::testing_support
