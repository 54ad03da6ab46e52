// DV frames of both line systems, whole and damaged, one after the other through the filter.
#include "baseclasses/ComRef.h"
#include "baseclasses/MediaSample.h"
#include "filter/SceneDetectFilter.h"
#include "fuzz/Input.h"
#include "tests/DvFrame.h"
#include "tests/TypeMaking.h"

#include <cstdlib>
#include <optional>
#include <set>
#include <span>
#include <vector>

using namespace scenedetect;
using fuzz::Require;

namespace {

constexpr int kMostFrames = 40;

/// A sample outside any allocator.
class Sample : public CMediaSample {
  public:
    explicit Sample(std::vector<std::uint8_t>& bytes)
        : CMediaSample(nullptr, nullptr, nullptr, bytes.data(), static_cast<LONG>(bytes.size())) {
        AddRef(); // never given back, since there is no allocator to return to
    }
};

// Made once each.
const testing_support::DvFrame& Picture(bool is625, std::uint8_t luma) {
    static std::optional<testing_support::DvFrame> made[2][256];
    std::optional<testing_support::DvFrame>& picture = made[is625][luma];
    if (!picture)
        picture.emplace(is625).SetLuma(luma);
    return *picture;
}

struct Seen {
    bool is625;
    int level; // -1: of a damaged frame
};

// Whether the fourth of six frames begins a scene, where that is plain: they stand still before and after.
std::optional<bool> IsCut(std::span<const Seen> frames) {
    constexpr int kPlain = 30, kDark = 25;
    for (const Seen& each : frames)
        if (each.level <= kDark || each.is625 != frames[0].is625)
            return std::nullopt;
    const int step = std::abs(frames[3].level - frames[2].level);
    for (const int i : {1, 2, 4, 5})
        if (frames[i].level != frames[i - 1].level)
            return std::nullopt;
    return step == 0 || step > kPlain ? std::optional(step != 0) : std::nullopt;
}

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
    std::vector<Seen> run;
    const auto endRun = [&] {
        Require(FrameCount(*filter) == sent);
        ULONG position = 0;
        std::set<ULONG> scenes;
        for (ULONG scene = 0; filter->GetNextScene(nullptr, nullptr, &position) == S_OK; ++scene) {
            Require(scene == 0 ? position == 0 : (position < sent || !isTimed) && !isOnePicture);
            scenes.insert(position);
        }
        for (std::size_t i = 3; isTimed && i + 2 < run.size(); ++i)
            if (const auto isCut = IsCut({&run[i - 3], 6}))
                Require(*isCut == scenes.contains(static_cast<ULONG>(i)));
    };
    for (int frames = 0; !input.IsEmpty() && frames < kMostFrames; ++frames) {
        const auto instruction = input.Take<std::uint8_t>();
        if (instruction & kRestart) {
            endRun();
            filter->EnableDetection(TRUE);
            sent = 0;
            run.clear();
            isOnePicture = true;
            isTimed = true;
        }
        if (instruction & kOtherSystem)
            is625 = !is625;
        if (instruction & kOtherPicture) {
            luma = input.Take<std::uint8_t>();
            isOnePicture = isOnePicture && sent == 0;
        }
        const int level = (luma + 128) % 256;
        if (level <= 25)
            isOnePicture = false; // a dark picture may begin a scene
        testing_support::DvFrame frame = Picture(is625, luma);
        frame.SetTimecode(testing_support::TimecodePack({0, 0, frames / 25, frames % 25}));
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
        run.push_back({is625, (instruction & (kDamage | kWrongType)) == 0 ? level : -1});
    }
    endRun();
    return 0;
}
