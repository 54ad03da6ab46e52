// A list of scenes as it stands in its file: what this program or another one has written and a person may
// have corrected.
#pragma once

#include "reading/timing/TimePoint.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace scenedetect {

struct ListedPoint {
    TimePoint point;
    std::optional<ClockPoint> clock; ///< what the list says beside a frame, by which another file is noticed
};

struct ListedScene {
    ListedPoint start;
    std::optional<ListedPoint> end; ///< exclusive; none: where the next begins, after the last the file's end
    std::string method;             ///< how its start was found
    std::string name{};             ///< that a person gave it
    std::string where{};            ///< in the list, for messages: "line 7"
};

struct SceneList {
    std::string path;               ///< for messages
    std::optional<Ratio> rate;      ///< of its video, where the list tells it
    bool hasSourceTimecode = false; ///< its points are the file's own timecode
    std::vector<ListedScene> scenes;
};

/// Of scenes whose list does not say it: a person's.
inline constexpr const char* kListedMethod = "manual";

/// What the text holds tells its kind: the JSON and CSV of this program, the CSV of others, bare points, EDL.
/// HostError with `path` and the place in it for what is none of these, or wrong in itself.
[[nodiscard]] SceneList ParseSceneList(std::string_view text, const std::string& path);

/// The list in a file. HostError when that can't be read, too.
[[nodiscard]] SceneList ReadSceneListFile(const std::string& path);

/// Throws HostError: the list's path, the place in it, what is wrong.
[[noreturn]] void FailInList(const std::string& path, const std::string& where, const std::string& what);

} // namespace scenedetect
