// The texts of the scene lists, one function a format; docs/outputs.md shows each.
#pragma once

#include <string>

namespace scenedetect {

struct SceneTable;

/// RFC 4180 with a header; frames count from 1 here, and the end frame is the last one.
[[nodiscard]] std::string SceneSheet(const SceneTable& table);
[[nodiscard]] std::string SceneJson(const SceneTable& table);
/// CMX 3600. HostError when the rate varies or timecode can't count it.
[[nodiscard]] std::string Edl(const SceneTable& table);
[[nodiscard]] std::string Otio(const SceneTable& table);
/// Version 1.8. HostError when the input is not a file that the list could point to.
[[nodiscard]] std::string Fcpxml(const SceneTable& table);
/// Final Cut Pro 7's XML, version 5. HostError as Fcpxml's, and at rates that it can't name.
[[nodiscard]] std::string Xmeml(const SceneTable& table);
/// For x264 and x265: an IDR frame where a scene begins.
[[nodiscard]] std::string QpFile(const SceneTable& table);
/// FFmpeg's metadata file.
[[nodiscard]] std::string MetadataChapters(const SceneTable& table);
[[nodiscard]] std::string MatroskaChapters(const SceneTable& table);
/// SubRip: the recording's date and time while they last. HostError when the table does not have them.
[[nodiscard]] std::string RecordingSubtitles(const SceneTable& table);

} // namespace scenedetect
