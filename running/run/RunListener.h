// Who wants to know of a run while it goes: what prints, writes or cuts is one of these.
#pragma once

#include "baseclasses/ComRef.h"
#include "reading/readers/Irregularity.h"
#include "reading/readers/MediaInfo.h"
#include "reading/readers/PictureFormat.h"
#include "reading/timing/TimeScale.h"
#include "running/detection/PictureAllocator.h"
#include "scenes/IKxSceneDetect.h"

#include <cstdint>
#include <string>

namespace scenedetect {

/// What is known once the input is open.
struct RunInfo {
    std::string input; ///< path as given
    TimeScale scale;
    PictureFormat format; ///< of the first picture
    MediaInfo media;
    FilePlace firstPlace; ///< of the first picture of the file, which a range may leave out
    std::string reader{}; ///< how the pictures are read, for people
};

struct FoundScene {
    std::int64_t number = 1;   ///< counted from 1
    std::int64_t sample = 0;   ///< which picture of the run, from 0
    std::int64_t position = 0; ///< which picture of the file: also those before the run's range count
    FilePlace place;
    std::string method;               ///< "video", or "timestamp+video" where several methods agree
    const Picture* picture = nullptr; ///< its first; valid during the call
};

struct RunEnd {
    std::int64_t samples = 0;
    FilePlace place;              ///< frame and time behind the last picture
    bool isInterrupted = false;   ///< by the user
    bool isBeforeFileEnd = false; ///< by the end of its range
};

/// Calls come on the run's thread, in this order: Begin, then for each picture that has passed the
/// filters Scene for those that it settles and Passed for itself; Scene for those that the end settles, End.
/// What throws hears no more, ends the run, and the others get their End. HostError is what to throw.
class RunListener {
  public:
    static constexpr std::int64_t kLookBack = 2;

    virtual ~RunListener() = default;
    virtual void Begin(const RunInfo& /*info*/) {}
    virtual void Scene(const FoundScene& /*scene*/) {}
    /// Before the picture that follows it, or before End.
    virtual void Irregular(const Irregularity& /*irregularity*/) {}
    /// `sample` keeps its picture's bytes for whoever holds it. No scene lies more than kLookBack before the
    /// picture that is told next.
    virtual void Passed(PictureSample& /*sample*/, std::int64_t /*index*/) {}
    /// What the picture comparison measured, once it is final: frame after frame, the last before End. Only
    /// in runs that were asked for it.
    virtual void Figures(const FilePlace& /*place*/, const KxFrameFigures& /*figures*/) {}
    virtual void End(const RunEnd& /*end*/) {}
};

} // namespace scenedetect
