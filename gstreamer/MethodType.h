// The methods as a type of GLib's.
#pragma once

#include <glib-object.h>

namespace scenedetect {

/// GstKxSceneDetectMethod, whose values are those of the C interface.
[[nodiscard]] GType MethodType();

} // namespace scenedetect
