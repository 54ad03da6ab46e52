// Pins, media types and buffers: what the filter takes, offers and asks for.
#include "baseclasses/Allocator.h"
#include "tests/Testing.h"
#include "tests/TypeMaking.h"
#include "tests/filter/FilterGraph.h"

namespace {

TEST(Negotiation, TypesByMethod) {
    const GUID someSubtype = {1, 2, 3, {4}};
    CMediaType audio;
    audio.SetType(&MEDIATYPE_Audio);
    audio.SetFormatType(&FORMAT_WaveFormatEx);
    const BITMAPINFOHEADER i420 = PictureHeader(720, 480, 12, MAKEFOURCC('I', '4', '2', '0'));
    const struct {
        const char* name;
        CMediaType type;
        bool video, timestamp, others;
    } cases[] = {
        {"dvsd", DvType(), true, true, true},
        {"DVSD", FourccType("DVSD", 720, 576, 24), true, true, true},
        {"RGB24", RgbType(MEDIASUBTYPE_RGB24, 320, 240, 24), true, false, true},
        {"YUY2", FourccType("YUY2", 320, 240, 16), true, false, true},
        {"YV12", FourccType("YV12", 320, 240, 12), true, false, true},
        {"UYVY", FourccType("UYVY", 320, 240, 16), true, false, true},
        {"I420 by header", VideoType(someSubtype, FORMAT_VideoInfo, i420), true, false, true},
        {"RGB32", RgbType(MEDIASUBTYPE_RGB32, 320, 240, 32), false, false, true},
        {"RGB565", RgbType(MEDIASUBTYPE_RGB565, 320, 240, 16), false, false, true},
        {"IYUV", FourccType("IYUV", 320, 240, 12), false, false, true},
        {"H264", FourccType("H264", 320, 240, 24), false, false, true},
        {"audio", audio, false, false, false},
        {"VideoInfo2", VideoType<VIDEOINFOHEADER2>(MEDIASUBTYPE_YUY2, FORMAT_VideoInfo2, i420), false, false,
         false},
    };
    Graph graph;
    for (const auto& one : cases) {
        SCOPED_TRACE(one.name);
        const auto accepts = [&](ULONG method) {
            graph.made.SetDetectionMethod(method);
            return graph.made.CheckInputType(&one.type) == S_OK;
        };
        EXPECT_EQ(accepts(KxMethodVideo), one.video);
        EXPECT_EQ(accepts(KxMethodTimestamp), one.timestamp);
        EXPECT_EQ(accepts(KxMethodInterval), one.others);
        EXPECT_EQ(accepts(KxMethodManual), one.others);
        EXPECT_EQ(accepts(17), one.others);
    }
}

TEST(Negotiation, VideoInfo2IsTakenWhileStreamingOnly) {
    const CMediaType changed = VideoType<VIDEOINFOHEADER2>(
        MEDIASUBTYPE_YUY2, FORMAT_VideoInfo2, PictureHeader(64, 48, 16, MAKEFOURCC('Y', 'U', 'Y', '2')));
    Graph graph;
    graph.Connect();
    EXPECT_NE(graph.in->QueryAccept(&changed), S_OK);
    graph.Pause();
    EXPECT_EQ(graph.in->QueryAccept(&changed), S_OK);
    graph.Stop();
    EXPECT_NE(graph.in->QueryAccept(&changed), S_OK);
}

TEST(Negotiation, UnconnectedTheOutputOffersFiveSizes) {
    Graph graph;
    const LONG sizes[][2] = {{160, 120}, {180, 120}, {180, 144}, {88, 60}, {88, 76}};
    int position = 0;
    for (const auto& size : sizes) {
        CMediaType type;
        ASSERT_EQ(graph.made.GetMediaType(position++, &type), S_OK);
        EXPECT_TRUE(type.majortype == MEDIATYPE_Video && type.subtype == MEDIASUBTYPE_RGB24 &&
                    type.formattype == FORMAT_VideoInfo);
        const BITMAPINFOHEADER* header = GetBitmapHeader(static_cast<const AM_MEDIA_TYPE&>(type));
        ASSERT_NE(header, nullptr);
        EXPECT_EQ(header->biSize, 40u);
        EXPECT_EQ(header->biWidth, size[0]);
        EXPECT_EQ(header->biHeight, size[1]);
        EXPECT_EQ(header->biPlanes, 1);
        EXPECT_EQ(header->biBitCount, 24);
        EXPECT_EQ(header->biSizeImage, static_cast<DWORD>(size[0] * size[1] * 3));
        EXPECT_EQ(GetFrameDuration(type), 0);
    }
    CMediaType type;
    EXPECT_EQ(graph.made.GetMediaType(position, &type), VFW_S_NO_MORE_ITEMS);
}

TEST(Negotiation, ConnectedTheOutputOffersTheInputsType) {
    Graph graph;
    const CMediaType yuy2 = Yuy2();
    ASSERT_EQ(graph.ConnectInput(yuy2), S_OK);
    CMediaType type;
    EXPECT_EQ(graph.made.GetMediaType(0, &type), S_OK);
    EXPECT_TRUE(type == yuy2);
    EXPECT_EQ(graph.made.GetMediaType(1, &type), VFW_S_NO_MORE_ITEMS);
}

// Grants what the test says, whatever is asked for.
class Allocator final : public CMemAllocator {
  public:
    Allocator() : CMemAllocator(NAME("test"), nullptr, &result) { AddRef(); } // the test's own

    ALLOCATOR_PROPERTIES asked{};
    ALLOCATOR_PROPERTIES granted{};
    HRESULT result = S_OK;

    STDMETHODIMP SetProperties(ALLOCATOR_PROPERTIES* request, ALLOCATOR_PROPERTIES* actual) override {
        asked = *request;
        *actual = granted;
        return result;
    }
    STDMETHODIMP GetProperties(ALLOCATOR_PROPERTIES* actual) override { return *actual = granted, result; }
};

TEST(Negotiation, BuffersFollowTheInputsAllocator) {
    const HRESULT kFailed = VFW_E_BADALIGN;
    const struct {
        const char* name;
        bool isConnected;
        LONG buffers, bytes; // of the input's allocator
        HRESULT input;
        LONG askedBuffers, askedBytes;
        LONG grantedBuffers, grantedBytes;
        HRESULT granting, result;
    } cases[] = {
        {"unconnected", false, 0, 0, S_OK, 1, 1, 1, 1, S_OK, S_OK},
        {"unconnected, no buffer granted", false, 0, 0, S_OK, 1, 1, 0, 1, S_OK, E_FAIL},
        {"unconnected, no byte granted", false, 0, 0, S_OK, 1, 1, 1, 0, S_OK, E_FAIL},
        {"more granted", true, 4, 5000, S_OK, 4, 5000, 6, 5000, S_OK, S_OK},
        {"too few granted", true, 4, 5000, S_OK, 4, 5000, 3, 5000, S_OK, E_FAIL},
        {"too small granted", true, 4, 5000, S_OK, 4, 5000, 4, 4999, S_OK, E_FAIL},
        {"nothing settled upstream", true, 0, 0, S_OK, 1, 1, 0, 0, S_OK, S_OK},
        {"refused", true, 4, 5000, S_OK, 4, 5000, 6, 5000, kFailed, kFailed},
        {"upstream fails", true, 4, 5000, kFailed, 0, 0, 6, 5000, S_OK, kFailed},
    };
    for (const auto& one : cases) {
        SCOPED_TRACE(one.name);
        Allocator upstream;
        upstream.granted = {one.buffers, one.bytes, 1, 0};
        upstream.result = one.input;
        Graph graph;
        if (one.isConnected) {
            ASSERT_EQ(graph.ConnectInput(Yuy2()), S_OK);
            const auto input = QueryFor<IMemInputPin>(graph.in.get(), IID_IMemInputPin);
            ASSERT_EQ(input->NotifyAllocator(&upstream, FALSE), S_OK);
        }
        Allocator allocator;
        allocator.granted = {one.grantedBuffers, one.grantedBytes, 1, 0};
        allocator.result = one.granting;
        ALLOCATOR_PROPERTIES request{0, 0, 16, 8};
        EXPECT_EQ(graph.made.DecideBufferSize(&allocator, &request), one.result);
        EXPECT_EQ(allocator.asked.cBuffers, one.askedBuffers);
        EXPECT_EQ(allocator.asked.cbBuffer, one.askedBytes);
        if (one.askedBuffers != 0) {
            EXPECT_EQ(allocator.asked.cbAlign, 16) << "alignment and prefix are the caller's";
            EXPECT_EQ(allocator.asked.cbPrefix, 8);
        }
    }
}

} // namespace
