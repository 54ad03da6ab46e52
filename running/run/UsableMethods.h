// Which of the ways to find scenes serve an input.
#pragma once

#include "reading/base/Console.h"
#include "reading/readers/MediaInfo.h"
#include "reading/readers/PictureFormat.h"
#include "running/run/RunSettings.h"

namespace scenedetect {

/// The settings without the methods and the tape's cuts that such pictures can't serve: each costs a warning,
/// and what is left finds what it finds alone. The area becomes one of the parameters. HostError when nothing
/// is left of what was asked for, and for an area beyond the pictures.
[[nodiscard]] RunSettings SettingsFor(RunSettings settings, const PictureFormat& format,
                                      const MediaInfo& media, Console& console);

} // namespace scenedetect
