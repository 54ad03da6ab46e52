#include "gstreamer/MethodType.h"

#include "library/kxscenes.h"

namespace scenedetect {

GType MethodType() {
    static const GEnumValue values[] = {
        {KXSCENES_TIMESTAMP, "Jumps of more than a second in the recording time of DV", "timestamp"},
        {KXSCENES_VIDEO, "Picture changes, told two frames late", "video"},
        {KXSCENES_INTERVAL, "Every N-th frame", "interval"},
        {KXSCENES_MANUAL, "Only at marks", "manual"},
        {0, nullptr, nullptr},
    };
    static const GType type = g_enum_register_static("GstKxSceneDetectMethod", values);
    return type;
}

} // namespace scenedetect
