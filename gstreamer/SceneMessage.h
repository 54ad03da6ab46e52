// What the element tells of a scene.
#pragma once

#include "library/kxscenes.h"

#include <gst/gst.h>

namespace scenedetect {

/// What is kept of a buffer until it is known whether a scene starts there. Times are GST_CLOCK_TIME_NONE
/// when unknown.
struct BufferMoment {
    GstClockTime timestamp = GST_CLOCK_TIME_NONE;
    GstClockTime duration = GST_CLOCK_TIME_NONE;
    GstClockTime runningTime = GST_CLOCK_TIME_NONE;
    GstClockTime streamTime = GST_CLOCK_TIME_NONE;
    gsize bytes = 0;
};

/// Of a buffer that came in `segment`.
[[nodiscard]] BufferMoment MomentOf(GstBuffer* buffer, const GstSegment& segment);

/// The structure "kxscenedetect", for an element message; owned by the caller. `moment` is that of the
/// scene's own buffer.
[[nodiscard]] GstStructure* DescribeScene(const kxscenes_scene& scene, const BufferMoment& moment);

} // namespace scenedetect
