// A filter that makes one sample out of another: what CTransformFilter does beyond its in-place kind.
#include "tests/Testing.h"
#include "tests/baseclasses/TestFilters.h"

namespace {

/// Turns YUY2 into UYVY.
class SwapFilter : public CTransformFilter {
  public:
    SwapFilter() : CTransformFilter(NAME("test"), nullptr, GUID_NULL) {}

    HRESULT CheckInputType(const CMediaType* pmt) override {
        return *pmt->Subtype() == MEDIASUBTYPE_YUY2 ? S_OK : S_FALSE;
    }
    HRESULT CheckTransform(const CMediaType* in, const CMediaType* out) override {
        return CheckInputType(in) == S_OK && *out->Subtype() == MEDIASUBTYPE_UYVY ? S_OK
                                                                                  : VFW_E_TYPE_NOT_ACCEPTED;
    }
    HRESULT GetMediaType(int position, CMediaType* pmt) override {
        return position == 0 ? pmt->Set(VideoType(MEDIASUBTYPE_UYVY)) : VFW_S_NO_MORE_ITEMS;
    }
    HRESULT DecideBufferSize(IMemAllocator* allocator, ALLOCATOR_PROPERTIES* request) override {
        *request = {1, 2, request->cbAlign, request->cbPrefix};
        ALLOCATOR_PROPERTIES actual;
        return allocator->SetProperties(request, &actual);
    }
    HRESULT Transform(IMediaSample* in, IMediaSample* out) override {
        BYTE* from = nullptr;
        BYTE* to = nullptr;
        in->GetPointer(&from);
        out->GetPointer(&to);
        to[0] = from[1];
        to[1] = from[0];
        return S_OK;
    }
};

} // namespace

TEST(Transform, MakesOneSampleOutOfAnother) {
    SourceFilter source;
    SwapFilter filter;
    SinkFilter sink;
    CBaseFilter* const filters[] = {&sink, &filter, &source};
    for (CBaseFilter* each : filters)
        each->AddRef();
    const CMediaType yuy2 = VideoType(MEDIASUBTYPE_YUY2);
    EXPECT_EQ(filter.GetPin(1)->QueryAccept(&yuy2), S_FALSE); // nothing to make a type from yet
    ASSERT_EQ(source.pin.Connect(filter.GetPin(0), nullptr), S_OK);
    EXPECT_EQ(filter.GetPin(1)->Connect(&sink.pin, &yuy2), VFW_E_TYPE_NOT_ACCEPTED);
    ASSERT_EQ(filter.GetPin(1)->Connect(&sink.pin, nullptr), S_OK);
    EXPECT_EQ(*sink.pin.CurrentMediaType().Subtype(), MEDIASUBTYPE_UYVY);
    EXPECT_NE(source.pin.Allocator(), sink.pin.Allocator());
    for (CBaseFilter* each : filters)
        ASSERT_EQ(each->Pause(), S_OK);

    IMediaSample* raw = nullptr;
    ASSERT_EQ(source.pin.GetDeliveryBuffer(&raw, nullptr, nullptr, 0), S_OK);
    ComRef<IMediaSample> sample(raw);
    BYTE* data = nullptr;
    sample->GetPointer(&data);
    data[0] = 1;
    data[1] = 2;
    REFERENCE_TIME start = 30;
    sample->SetTime(&start, nullptr);
    sample->SetSyncPoint(TRUE);
    sink.pin.onSample = [&](IMediaSample* made) {
        BYTE* bytes = nullptr;
        made->GetPointer(&bytes);
        EXPECT_EQ(bytes[0] * 10 + bytes[1], 21);
        REFERENCE_TIME stop = 0;
        EXPECT_EQ(made->GetTime(&start, &stop), VFW_S_NO_STOP_TIME);
        EXPECT_EQ(start, 30);
        EXPECT_EQ(made->IsSyncPoint(), S_OK);
        EXPECT_EQ(made->GetActualDataLength(), 2);
    };
    for (int n = 0; n < 3; ++n) // the output's one buffer comes back each time
        EXPECT_EQ(source.pin.Deliver(raw), S_OK);
    EXPECT_EQ(sink.pin.samples, 3);

    sample.reset();
    for (CBaseFilter* each : filters)
        EXPECT_EQ(each->Stop(), S_OK);
    for (CBasePin* pin : {static_cast<CBasePin*>(&source.pin), filter.GetPin(0), filter.GetPin(1),
                          static_cast<CBasePin*>(&sink.pin)})
        EXPECT_EQ(pin->Disconnect(), S_OK);
}
