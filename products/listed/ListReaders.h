// The readers of the kinds of scene lists; docs/outputs.md tells what each takes.
#pragma once

#include <string_view>

namespace scenedetect {

struct SceneList;

// Each fills `list`, which has its path; HostError as ParseSceneList.
void ReadJsonList(std::string_view text, SceneList& list);
void ReadCsvList(std::string_view text, SceneList& list);
/// CMX 3600: source in and out of the video events.
void ReadEdlList(std::string_view text, SceneList& list);
/// Whether the text begins as an EDL does.
[[nodiscard]] bool IsEdl(std::string_view text);

} // namespace scenedetect
