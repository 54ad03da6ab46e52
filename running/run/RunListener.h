// Who wants to know of a run while it goes: what prints, writes or cuts is one of these.
#pragma once

#include "baseclasses/ComRef.h"
#include "engine/decision/DetectionParameters.h"
#include "reading/dv/DvPacks.h"
#include "reading/readers/Irregularity.h"
#include "reading/readers/MediaInfo.h"
#include "reading/readers/PictureFormat.h"
#include "reading/timing/TimeScale.h"
#include "running/detection/PictureAllocator.h"
#include "scenes/IKxSceneDetect.h"

#include <cstdint>
#include <string>
#include <vector>

namespace scenedetect {

/// What is known once the input is open.
struct RunInfo {
    std::string input; ///< path as given
    TimeScale scale;
    PictureFormat format; ///< of the first picture
    MediaInfo media;
    FilePlace firstPlace;             ///< of the first picture of the file, which a range may leave out
    bool hasDvAudio{};                ///< that picture is a DV frame with audio in it
    std::string reader{};             ///< how the pictures are read, for people
    std::string methods{};            ///< that find the scenes, for people
    DetectionParameters parameters{}; ///< that "video" judges by
};

struct FoundScene {
    std::int64_t number = 1;   ///< counted from 1
    std::int64_t sample = 0;   ///< which picture of the run, from 0
    std::int64_t position = 0; ///< which picture of the file: also those before the run's range count
    FilePlace place;
    std::string method; ///< "video", or "timestamp+recording" where several agree
    DvPacks tape{};     ///< what its first frame says, if that is DV
    std::string name{}; ///< that a list gives it
};

/// How a run ended that did not fail. But for `Complete` what is made of it is partial.
enum class RunEnding {
    Complete, ///< at the end of the input or of the range
    BrokeOff, ///< where the input ends early
    Stopped,  ///< by the user
};

struct RunEnd {
    std::int64_t samples = 0;
    FilePlace place; ///< frame and time after the last picture
    RunEnding ending = RunEnding::Complete;
    bool isBeforeFileEnd = false; ///< by the end of its range
};

/// The outputs of a run, by their names.
struct RunOutputs {
    std::vector<std::string> written;
    std::vector<std::string> missing;

    void Add(const std::string& name, bool isWritten) { (isWritten ? written : missing).push_back(name); }
    /// Files of a kind ("clip") in a folder, the last of which is there when it `isDone`.
    void AddSeries(const std::string& kind, const std::string& folder, std::int64_t count, bool isDone) {
        if (count != 0)
            written.push_back(std::to_string(count) + ' ' + kind + (count == 1 ? "" : "s") + " in " + folder);
        if (!isDone)
            missing.push_back((count != 0 ? "the other " : "") + kind + "s in " + folder);
    }
};

/// Calls come on the run's thread, in this order: Begin, then for each picture that has passed the
/// filters Scene (or Gap) for those that it settles and Passed for itself; Scene for those that the end
/// settles, End. What throws hears no more. HostError is what to throw: it fails the run, and before End it
/// ends it, so that nobody gets an End and no file its name; an error in End leaves the others theirs.
class RunListener {
  public:
    /// A scene that is not held back for its length is told so many pictures after its first at the most.
    static constexpr std::int64_t kLookBack = 2;

    virtual ~RunListener() = default;
    virtual void Begin(const RunInfo& /*info*/) {}
    /// Scenes are in order; one that may be too short is told once it is long enough.
    virtual void Scene(const FoundScene& /*scene*/) {}
    /// With this picture begins what belongs to no scene, until the next one begins; where scenes are read
    /// from a list, and where those that are too short are left out. The latter is told once that is known.
    virtual void Gap(std::int64_t /*sample*/, const FilePlace& /*place*/) {}
    /// Before the picture that follows it, or before End.
    virtual void Irregular(const Irregularity& /*irregularity*/) {}
    /// `sample` keeps its picture's bytes for whoever holds it.
    virtual void Passed(PictureSample& /*sample*/, std::int64_t /*index*/) {}
    /// What the picture comparison measured, once it is final: frame after frame, the last before End. Only
    /// in runs that were asked for it; likewise the distances.
    virtual void Figures(const FilePlace& /*place*/, const KxFrameFigures& /*figures*/,
                         const KxFrameDistances& /*distances*/) {}
    virtual void End(const RunEnd& /*end*/) {}
    /// What it has written by now, and what it was to write and has not. At any time.
    virtual void ListOutputs(RunOutputs& /*outputs*/) const {}
};

} // namespace scenedetect
