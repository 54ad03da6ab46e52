// The XML scene-list file: the positions of one run, and the method that found them.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace scenedetect {

/// Writes the file and reports the outcome to the log (there is no other report). An existing file is
/// replaced; a file that could not be written whole is left as it is. `path` must not be empty. The text is
/// ASCII with CR LF line ends; a method other than 0..3 leaves the method attribute out.
void WriteSceneListFile(const std::wstring& path, const std::vector<std::int32_t>& positions,
                        std::uint32_t method);

} // namespace scenedetect
