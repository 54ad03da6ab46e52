// A detection run as a host steers it through the control interfaces, in the order of the calls.
#pragma once

#include "reading/readers/MediaInfo.h"
#include "reading/readers/PictureFormat.h"
#include "running/detection/DetectionSettings.h"
#include "running/detection/MarkSchedule.h"
#include "scenes/IKxSceneDetect.h"

#include <cstdint>
#include <functional>
#include <string>

namespace scenedetect {

/// HostError with `what` and the code for a failure.
void Require(HRESULT hr, const std::string& what);

/// Before the pins are connected: the method, one of the settings', decides which video the filter takes.
void ChooseDetection(IKxSceneDetect2& scenes, IKxSceneDetectEx& scenesEx, KxDetectionMethod method,
                     const DetectionSettings& settings);
/// Puts the area of the picture among the parameters. HostError when it reaches beyond the input's pictures.
void SettleArea(ParameterChoice& choice, const PictureFormat& format, const MediaInfo& media,
                const std::string& input);
/// Sets what was given, for runs that begin afterwards. HostError when the filter refuses.
void ApplyParameters(IKxSceneDetectTuning& tuning, const ParameterChoice& choice);
/// What to say when the filter refused the input's video.
[[nodiscard]] std::string RefusalText(KxDetectionMethod method, const std::string& input);

/// HostError for pictures of which the method would not find the changes. For the format of each picture.
void RequireComparable(const PictureFormat& format, KxDetectionMethod method, const std::string& input);

/// Before the graph runs: names the scene-list file (empty: none) and switches detection on. HostError when
/// there can be no such file.
void BeginDetection(IKxSceneDetect2& scenes, const std::string& listPath, const std::string& input);

/// While the graph runs, and once more when it is done: hands over the positions found since the last call.
void TakeScenes(IKxSceneDetect2& scenes, const std::function<void(std::int32_t position)>& take);

/// Tells of marks that no frame came for; empty when there are none.
[[nodiscard]] std::string UnusedMarksText(const MarkSchedule& marks, std::int64_t frameCount,
                                          KxDetectionMethod method);

} // namespace scenedetect
