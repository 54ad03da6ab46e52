// The configuration file: options that hold for every run.
#pragma once

#include "hosts/cli/CommonOptions.h"

#include <string>
#include <vector>

namespace scenedetect {

/// kxscenes/kxscenes.conf in the user's configuration folder ($XDG_CONFIG_HOME, or ~/.config); empty when it
/// is not there.
[[nodiscard]] std::string UserConfigFile();

/// Lines of `name = value`, `name = [value, value]`, or just `name` for a flag; comments begin with '#', and
/// values with spaces, commas or '#' stand in quotes. HostError when the file can't be read or sets something
/// twice; which names there are is not known here.
[[nodiscard]] std::vector<Setting> ReadConfigFile(const std::string& path);

} // namespace scenedetect
