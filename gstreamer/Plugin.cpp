// The plugin of GStreamer's that holds the element.
#include "gstreamer/SceneDetectElement.h"

#include <gst/gst.h>

#define PACKAGE "tamrak-scene-detect"

static gboolean RegisterElements(GstPlugin* plugin) {
    return gst_element_register(plugin, "kxscenedetect", GST_RANK_NONE,
                                scenedetect::SceneDetectElementType());
}

GST_PLUGIN_DEFINE(GST_VERSION_MAJOR, GST_VERSION_MINOR, kxscenes, "Scene detection", RegisterElements,
                  PROJECT_VERSION, "MIT/X11", "Tamrak Scene Detect", "https://tamrak.invalid")
