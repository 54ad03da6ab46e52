#include "running/detection/DetectionCalls.h"

#include "platform/Text.h"
#include "reading/base/HostError.h"
#include "reading/base/ListText.h"
#include "running/detection/SceneListCheck.h"
#include "scenes/ParameterNames.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>

namespace scenedetect {

void Require(HRESULT hr, const std::string& what) {
    if (SUCCEEDED(hr))
        return;
    char code[20];
    std::snprintf(code, sizeof code, " (0x%08X)", static_cast<unsigned>(hr));
    throw HostError(what + code);
}

void ChooseDetection(IKxSceneDetect2& scenes, IKxSceneDetectEx& scenesEx, KxDetectionMethod method,
                     const DetectionSettings& settings) {
    scenes.SetDetectionMethod(method);
    scenes.SetSceneInterval(settings.interval);
    scenes.EnableTimecode(settings.readTimecode ? TRUE : FALSE);
    scenesEx.EnableSceneBitmaps(FALSE);
}

void SettleArea(ParameterChoice& choice, const PictureFormat& format, const MediaInfo& media,
                const std::string& input) {
    // What fills no block at the right is not handed to the filter.
    const PictureSize seen{static_cast<int>(format.width), std::abs(static_cast<int>(format.height))};
    try {
        choice.SettleArea(seen, {std::max(seen.width, media.width), std::max(seen.height, media.height)});
    } catch (const HostError& error) {
        throw HostError(input + ": " + error.what());
    }
}

void ApplyParameters(IKxSceneDetectTuning& tuning, const ParameterChoice& choice) {
    for (std::size_t i = 0; i < choice.values.size(); ++i)
        if (choice.values[i])
            Require(tuning.SetParameter(static_cast<ULONG>(i), *choice.values[i]),
                    std::string("the scene detect filter does not take --") + kParameterNames[i] + ' ' +
                        std::to_string(*choice.values[i]));
}

std::string RefusalText(KxDetectionMethod method, const std::string& input) {
    return input + (method == KxMethodTimestamp ? ": --method timestamp needs DV video of 25 Mbit/s"
                                                : ": the scene detect filter does not take this video");
}

void RequireComparable(const PictureFormat& format, KxDetectionMethod method, const std::string& input) {
    if (format.isDv411Of625 && method == KxMethodVideo)
        throw HostError(input + ": --method video can't compare 4:1:1 DV of 625 lines; all other methods "
                                "take it");
}

void BeginDetection(IKxSceneDetect2& scenes, const std::string& path, const std::string& input) {
    if (!path.empty())
        RequireSceneListName(path, input);
    const std::string obstacle = path.empty() ? "" : FindSceneListObstacle(path);
    scenes.EnableSceneListFile(WideFromUtf8(path).c_str());
    scenes.EnableDetection(TRUE);
    if (obstacle.empty())
        return;
    // Better now than after hours. The filter tries all the same, so that its log tells of it, too.
    scenes.EnableDetection(FALSE);
    throw HostError(path + ": the scene list cannot be written: " + obstacle);
}

void TakeScenes(IKxSceneDetect2& scenes, const std::function<void(std::int32_t position)>& take) {
    ULONG position = 0;
    // An empty queue gives a success code, too: only S_OK comes with a scene.
    while (scenes.GetNextScene(nullptr, nullptr, &position) == S_OK) {
        scenes.ReleaseScene();
        take(static_cast<std::int32_t>(position));
    }
}

std::string UnusedMarksText(const MarkSchedule& marks, std::int64_t frameCount, KxDetectionMethod method) {
    std::string list;
    for (const std::uint32_t mark : marks.Remaining())
        AppendToList(list, ",", std::to_string(mark));
    if (list.empty())
        return "";
    return "no scene for --mark " + list + ": the run ended after " + std::to_string(frameCount) + " frames" +
           (method == KxMethodVideo ? ", the last two of which --method video can't mark" : "");
}

} // namespace scenedetect
