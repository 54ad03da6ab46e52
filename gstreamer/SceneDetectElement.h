// kxscenedetect, the element: it watches the buffers that pass and tells their scenes on the bus.
#pragma once

#include <glib-object.h>

namespace scenedetect {

/// GstKxSceneDetect, a GstBaseTransform.
[[nodiscard]] GType SceneDetectElementType();

} // namespace scenedetect
