// The configuration file: options that hold for every run.
#pragma once

#include "hosts/cli/CommonOptions.h"

#include <filesystem>
#include <string>
#include <vector>

namespace scenedetect {

/// The user's folder for such files: $XDG_CONFIG_HOME, or ~/.config; on Windows %APPDATA%. Relative when
/// there is none.
[[nodiscard]] std::filesystem::path UserConfigFolder();
/// kxscenes/kxscenes.conf in it; empty when it is not there.
[[nodiscard]] std::string UserConfigFile();

/// Lines of `name = value`, `name = [value, value]`, or just `name` for a flag; comments begin with '#', and
/// values with spaces, commas or '#' stand in quotes. HostError when the file can't be read or sets something
/// twice; which names there are is not known here.
[[nodiscard]] std::vector<Setting> ReadConfigFile(const std::string& path);

} // namespace scenedetect
