// The parameters of the picture comparison as options.
#pragma once

#include "running/detection/DetectionSettings.h"

namespace CLI {
class App;
} // namespace CLI

namespace scenedetect {

/// Adds one option for each parameter, with its range, its default and its effect in the help text. `choice`
/// is filled when `app` parses, and must outlive that.
void AddParameterOptions(CLI::App& app, ParameterChoice& choice);

/// Adds the options about flashes, fades and dissolves; likewise.
void AddTransitionOptions(CLI::App& app, TransitionChoice& choice);

} // namespace scenedetect
