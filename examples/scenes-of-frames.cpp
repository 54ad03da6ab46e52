// Makes the scene detect filter, sends it frames that this program paints itself, and prints where their
// scenes begin.
#include "Peer.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>

namespace {

constexpr LONG kWidth = 64;
constexpr LONG kHeight = 48;
constexpr LONG kFrameBytes = kWidth * kHeight * 2;

void Require(HRESULT result, const char* what) {
    if (result == S_OK)
        return;
    std::fprintf(stderr, "%s: 0x%08X\n", what, static_cast<unsigned>(result));
    std::exit(1);
}

template <typename Interface>
Interface* Query(IUnknown* object, REFIID id) {
    void* found = nullptr;
    Require(object->QueryInterface(id, &found), "the object lacks an interface");
    return static_cast<Interface*>(found);
}

IPin* FindPin(IBaseFilter* filter, const wchar_t* name) {
    IPin* pin = nullptr;
    Require(filter->FindPin(name, &pin), "the filter lacks a pin");
    return pin;
}

IBaseFilter* MakeFilter() {
    void* factory = nullptr;
    Require(DllGetClassObject(CLSID_SceneDetectFilter, IID_IClassFactory, &factory), "no class factory");
    void* filter = nullptr;
    Require(static_cast<IClassFactory*>(factory)->CreateInstance(nullptr, IID_IBaseFilter, &filter),
            "the filter cannot be made");
    static_cast<IClassFactory*>(factory)->Release();
    return static_cast<IBaseFilter*>(filter);
}

AM_MEDIA_TYPE VideoType(VIDEOINFOHEADER& video) {
    video.AvgTimePerFrame = 400000; // 25 frames a second
    video.bmiHeader.biSize = sizeof video.bmiHeader;
    video.bmiHeader.biWidth = kWidth;
    video.bmiHeader.biHeight = kHeight;
    video.bmiHeader.biPlanes = 1;
    video.bmiHeader.biBitCount = 16;
    video.bmiHeader.biCompression = MAKEFOURCC('Y', 'U', 'Y', '2');
    video.bmiHeader.biSizeImage = kFrameBytes;
    return {MEDIATYPE_Video, MEDIASUBTYPE_YUY2, TRUE,
            FALSE,           kFrameBytes,       FORMAT_VideoInfo,
            nullptr,         sizeof video,      reinterpret_cast<BYTE*>(&video)};
}

// 100 frames with a cut at 30 and one at 75.
BYTE Brightness(int frame) {
    return frame < 30 ? 90 : frame < 75 ? 200 : 140;
}

} // namespace

int main() {
    IBaseFilter* filter = MakeFilter();
    auto* scenes = Query<IKxSceneDetect2>(filter, IID_IKxSceneDetect2);
    Require(scenes->SetDetectionMethod(KxMethodVideo), "the method");

    Peer source(PINDIR_OUTPUT);
    Peer sink(PINDIR_INPUT);
    VIDEOINFOHEADER video{};
    const AM_MEDIA_TYPE type = VideoType(video);
    IPin* in = FindPin(filter, L"In");
    IPin* out = FindPin(filter, L"Out");
    auto* input = Query<IMemInputPin>(in, IID_IMemInputPin);
    Require(in->ReceiveConnection(&source, &type), "the input refuses the type");
    IMemAllocator* buffers = nullptr;
    Require(input->GetAllocator(&buffers), "no allocator");
    ALLOCATOR_PROPERTIES wanted{2, kFrameBytes, 1, 0};
    ALLOCATOR_PROPERTIES actual{};
    Require(buffers->SetProperties(&wanted, &actual), "no buffers");
    Require(input->NotifyAllocator(buffers, FALSE), "the allocator is refused");
    Require(out->Connect(&sink, &type), "the output refuses the type");

    Require(buffers->Commit(), "no memory");
    Require(filter->Pause(), "the filter does not start"); // a paused filter streams
    Require(scenes->EnableDetection(TRUE), "detection");
    for (int frame = 0; frame < 100; ++frame) {
        IMediaSample* sample = nullptr;
        Require(buffers->GetBuffer(&sample, nullptr, nullptr, 0), "no buffer");
        BYTE* bytes = nullptr;
        Require(sample->GetPointer(&bytes), "no memory");
        std::fill(bytes, bytes + kFrameBytes, Brightness(frame));
        Require(input->Receive(sample), "the frame is refused");
        sample->Release();
    }
    ULONG position = 0;
    while (scenes->GetNextScene(nullptr, nullptr, &position) == S_OK) {
        std::printf("%u\n", static_cast<unsigned>(position));
        scenes->ReleaseScene();
    }
    scenes->EnableDetection(FALSE);

    filter->Stop();
    out->Disconnect();
    in->Disconnect();
    for (IUnknown* each :
         {static_cast<IUnknown*>(buffers), static_cast<IUnknown*>(input), static_cast<IUnknown*>(in),
          static_cast<IUnknown*>(out), static_cast<IUnknown*>(scenes), static_cast<IUnknown*>(filter)})
        each->Release();
    return DllCanUnloadNow() == S_OK ? 0 : 1;
}
