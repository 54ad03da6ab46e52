// DV frames of both line systems, whole and damaged, one after the other through the filter.
#include "baseclasses/ComRef.h"
#include "baseclasses/MediaSample.h"
#include "filter/SceneDetectFilter.h"
#include "fuzz/Input.h"
#include "tests/DvFrame.h"
#include "tests/TypeMaking.h"

using namespace scenedetect;
using fuzz::Require;

namespace {

/// A sample outside any allocator.
class Sample : public CMediaSample {
  public:
    explicit Sample(std::vector<std::uint8_t>& bytes)
        : CMediaSample(nullptr, nullptr, nullptr, bytes.data(), static_cast<LONG>(bytes.size())) {
        AddRef(); // never given back, since there is no allocator to return to
    }
};

ULONG FrameCount(SceneDetectFilter& filter) {
    ULONG count = 0;
    filter.GetFrameCount(&count);
    return count;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    constexpr std::uint8_t kOtherSystem = 1, kOtherPicture = 2, kDamage = 4, kWrongType = 8, kRestart = 16,
                           kNoTimes = 32;
    fuzz::Input input(data, size);
    HRESULT hr = S_OK;
    auto* filter = static_cast<SceneDetectFilter*>(SceneDetectFilter::CreateInstance(nullptr, &hr));
    filter->AddRef();
    const ComRef<IBaseFilter> owner(filter);
    filter->SetDetectionMethod(KxMethodVideo);
    filter->EnableTimecode(TRUE);
    filter->EnableSceneBitmaps(FALSE);
    filter->EnableDetection(TRUE);

    bool is625 = true;
    std::uint8_t luma = 180;
    ULONG sent = 0;
    bool isOnePicture = true;
    bool isTimed = true; // positions of samples without times may lie anywhere
    const auto endRun = [&] {
        Require(FrameCount(*filter) == sent);
        ULONG position = 0;
        for (ULONG scene = 0; filter->GetNextScene(nullptr, nullptr, &position) == S_OK; ++scene)
            Require(scene == 0 ? position == 0 : (position < sent || !isTimed) && !isOnePicture);
    };
    for (int frames = 0; !input.IsEmpty() && frames < 100; ++frames) {
        const auto instruction = input.Take<std::uint8_t>();
        if (instruction & kRestart) {
            endRun();
            filter->EnableDetection(TRUE);
            sent = 0;
            isOnePicture = true;
            isTimed = true;
        }
        if (instruction & kOtherSystem)
            is625 = !is625;
        if (instruction & kOtherPicture) {
            luma = input.Take<std::uint8_t>();
            isOnePicture = isOnePicture && sent == 0;
        }
        if ((luma + 128) % 256 <= 25)
            isOnePicture = false; // a dark picture may begin a scene
        testing_support::DvFrame frame(is625);
        frame.SetLuma(luma).SetTimecode(testing_support::TimecodePack({0, 0, frames / 25, frames % 25}));
        if (instruction & kDamage) {
            isOnePicture = false;
            if (const std::size_t place = input.Take<std::uint16_t>() * std::size_t{3};
                place < frame.Bytes().size())
                frame.Bytes()[place] = input.Take<std::uint8_t>();
            else
                frame.Cut(input.Take<std::uint16_t>());
        }
        if (instruction & kWrongType)
            isOnePicture = false;
        Sample sample(frame.Bytes());
        CMediaType type = testing_support::DvType(is625 != ((instruction & kWrongType) != 0));
        sample.SetMediaType(&type);
        REFERENCE_TIME start = sent * REFERENCE_TIME{400000};
        REFERENCE_TIME stop = start + 400000;
        if (instruction & kNoTimes)
            isTimed = false;
        else
            sample.SetTime(&start, &stop);
        Require(filter->Transform(&sample) == S_OK);
        ++sent;
    }
    endRun();
    return 0;
}
