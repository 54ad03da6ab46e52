#include "gstreamer/SceneDetectElement.h"

#include "gstreamer/FrameLayout.h"
#include "gstreamer/MethodType.h"
#include "gstreamer/Properties.h"
#include "gstreamer/SceneMessage.h"
#include "library/kxscenes.h"

#include <gst/base/gstbasetransform.h>

#include <array>
#include <atomic>
#include <cstdint>
#include <optional>
#include <utility>

GST_DEBUG_CATEGORY_STATIC(kxscenedetect_debug);
#define GST_CAT_DEFAULT kxscenedetect_debug

namespace scenedetect {
namespace {

constexpr gsize kLeastDvBytes = 120000;

/// What an element holds. But for the detector and the count of scenes it belongs to the streaming thread.
struct Watch {
    Watch() { kxscenes_create(nullptr, &detector); }
    ~Watch() { kxscenes_destroy(detector); }
    Watch(const Watch&) = delete;
    Watch& operator=(const Watch&) = delete;

    void Restart() {
        kxscenes_restart(detector);
        scenes = 0;
    }
    BufferMoment& Latest(std::int64_t number) { return latest[static_cast<std::size_t>(number) % 3]; }

    kxscenes_detector* detector = nullptr; ///< null when there was no memory, which its functions know
    std::atomic<gint> scenes = 0;          ///< told in this run
    std::optional<FrameLayout> layout;
    /// Of the buffers that a scene can still start with, by the number that the library hands back as their
    /// time: unlike the number of a frame, it is the same for ever.
    std::array<BufferMoment, 3> latest;
    std::int64_t pushed = 0;
    bool hasWarned = false;
};

// Names that GLib makes its own of, and therefore in its style.
struct GstKxSceneDetect {
    GstBaseTransform parent;
    Watch* watch;
};
struct GstKxSceneDetectClass {
    GstBaseTransformClass parent;
};
G_DEFINE_TYPE(GstKxSceneDetect, gst_kx_scene_detect, GST_TYPE_BASE_TRANSFORM)

GstKxSceneDetect* Self(gpointer instance) {
    return static_cast<GstKxSceneDetect*>(instance);
}

Watch& WatchOf(gpointer instance) {
    return *Self(instance)->watch;
}

void WarnOnce(GstKxSceneDetect* self, const char* what) {
    if (std::exchange(self->watch->hasWarned, true))
        return;
    GST_ELEMENT_WARNING(self, STREAM, FORMAT, ("%s", what), (nullptr));
}

void TellScenes(GstKxSceneDetect* self) {
    Watch& watch = *self->watch;
    kxscenes_scene scene{};
    scene.struct_size = sizeof scene;
    while (kxscenes_take_scene(watch.detector, &scene) == KXSCENES_OK) {
        ++watch.scenes;
        GstStructure* told = DescribeScene(scene, watch.Latest(scene.time));
        gst_element_post_message(GST_ELEMENT(self), gst_message_new_element(GST_OBJECT(self), told));
    }
}

// --- GstBaseTransform, on the streaming thread ---

GstFlowReturn TransformIp(GstBaseTransform* trans, GstBuffer* buffer) {
    GstKxSceneDetect* self = Self(trans);
    Watch& watch = *self->watch;
    if (!watch.layout)
        return GST_FLOW_NOT_NEGOTIATED;
    std::int32_t result = KXSCENES_ERROR_NULL;
    {
        MappedFrame mapped(*watch.layout, buffer);
        kxscenes_frame* frame = mapped.Frame();
        if (!frame) {
            WarnOnce(self, "A buffer can't be read, or is too short: it is no frame of the run.");
            return GST_FLOW_OK;
        }
        if (frame->format == KXSCENES_DV && static_cast<gsize>(frame->dv_size) < kLeastDvBytes)
            WarnOnce(self, "A DV frame is too short: it shows no change.");
        frame->time = watch.pushed;
        watch.Latest(watch.pushed) = MomentOf(buffer, trans->segment);
        result = kxscenes_push(watch.detector, frame);
        // A stream that goes on after its end is a new one.
        if (result == KXSCENES_ERROR_ENDED) {
            watch.Restart();
            result = kxscenes_push(watch.detector, frame);
        }
    }
    if (result == KXSCENES_OK)
        ++watch.pushed;
    else
        WarnOnce(self, kxscenes_error_text(result));
    TellScenes(self);
    return GST_FLOW_OK;
}

gboolean SetCaps(GstBaseTransform* trans, GstCaps* in, GstCaps*) {
    Watch& watch = WatchOf(trans);
    const auto layout = LayoutOf(in);
    if (!layout)
        return FALSE;
    if (watch.layout && !watch.layout->IsLike(*layout))
        watch.Restart();
    watch.layout = layout;
    return TRUE;
}

gboolean SinkEvent(GstBaseTransform* trans, GstEvent* event) {
    Watch& watch = WatchOf(trans);
    if (GST_EVENT_TYPE(event) == GST_EVENT_FLUSH_STOP)
        watch.Restart();
    else if (GST_EVENT_TYPE(event) == GST_EVENT_EOS)
        kxscenes_end(watch.detector);
    return GST_BASE_TRANSFORM_CLASS(gst_kx_scene_detect_parent_class)->sink_event(trans, event);
}

gboolean SrcEvent(GstBaseTransform* trans, GstEvent* event) {
    // The base class would drop buffers that come late.
    if (GST_EVENT_TYPE(event) == GST_EVENT_QOS)
        return gst_pad_push_event(GST_BASE_TRANSFORM_SINK_PAD(trans), event);
    return GST_BASE_TRANSFORM_CLASS(gst_kx_scene_detect_parent_class)->src_event(trans, event);
}

gboolean Start(GstBaseTransform* trans) {
    Watch& watch = WatchOf(trans);
    watch.Restart();
    watch.layout.reset();
    watch.hasWarned = false;
    return TRUE;
}

gboolean Stop(GstBaseTransform* trans) {
    kxscenes_end(WatchOf(trans).detector);
    return TRUE;
}

// --- GObject, on any thread ---

kxscenes_settings SettingsOf(const Watch& watch) {
    kxscenes_settings settings{};
    settings.struct_size = sizeof settings;
    kxscenes_get_settings(watch.detector, &settings);
    return settings;
}

void SetProperty(GObject* object, guint id, const GValue* value, GParamSpec*) {
    Watch& watch = WatchOf(object);
    GST_OBJECT_LOCK(object); // nobody else changes another one meanwhile
    kxscenes_settings settings = SettingsOf(watch);
    const std::int32_t before = settings.method;
    SetSetting(settings, id, *value);
    const std::int32_t result = kxscenes_change_settings(watch.detector, &settings);
    // The grid is laid out at a run's first frame.
    if (settings.method == KXSCENES_VIDEO && before != KXSCENES_VIDEO)
        watch.Restart();
    GST_OBJECT_UNLOCK(object);
    if (result != KXSCENES_OK)
        GST_ERROR_OBJECT(object, "settings stay as they are: %s", kxscenes_error_text(result));
}

void GetProperty(GObject* object, guint id, GValue* value, GParamSpec*) {
    const Watch& watch = WatchOf(object);
    if (id == kScenes) {
        g_value_set_int(value, watch.scenes);
    } else if (id == kFrames) {
        std::int32_t frames = 0;
        kxscenes_frame_count(watch.detector, &frames);
        g_value_set_int(value, frames);
    } else {
        GetSetting(SettingsOf(watch), id, *value);
    }
}

void Mark(GstKxSceneDetect* self) {
    kxscenes_mark(self->watch->detector);
}

void Finalize(GObject* object) {
    delete Self(object)->watch;
    G_OBJECT_CLASS(gst_kx_scene_detect_parent_class)->finalize(object);
}

void gst_kx_scene_detect_class_init(GstKxSceneDetectClass* elementClass) {
    GST_DEBUG_CATEGORY_INIT(kxscenedetect_debug, "kxscenedetect", 0, "scene detection");
    GObjectClass* object = G_OBJECT_CLASS(elementClass);
    object->set_property = SetProperty;
    object->get_property = GetProperty;
    object->finalize = Finalize;
    InstallProperties(object);
    g_signal_new_class_handler("mark", G_TYPE_FROM_CLASS(elementClass),
                               static_cast<GSignalFlags>(G_SIGNAL_RUN_LAST | G_SIGNAL_ACTION),
                               G_CALLBACK(Mark), nullptr, nullptr, nullptr, G_TYPE_NONE, 0);

    GstElementClass* element = GST_ELEMENT_CLASS(elementClass);
    gst_element_class_set_static_metadata(
        element, "Scene detector", "Filter/Analyzer/Video",
        "Passes video on untouched, and tells on the bus where its scenes begin",
        "Tamrak Scene Detect contributors <contributors@tamrak.invalid>");
    GstCaps* caps = WatchableCaps();
    gst_element_class_add_pad_template(element,
                                       gst_pad_template_new("sink", GST_PAD_SINK, GST_PAD_ALWAYS, caps));
    gst_element_class_add_pad_template(element,
                                       gst_pad_template_new("src", GST_PAD_SRC, GST_PAD_ALWAYS, caps));
    gst_caps_unref(caps);
    gst_type_mark_as_plugin_api(MethodType(), static_cast<GstPluginAPIFlags>(0));

    GstBaseTransformClass* transform = GST_BASE_TRANSFORM_CLASS(elementClass);
    transform->transform_ip = TransformIp;
    transform->set_caps = SetCaps;
    transform->sink_event = SinkEvent;
    transform->src_event = SrcEvent;
    transform->start = Start;
    transform->stop = Stop;
}

void gst_kx_scene_detect_init(GstKxSceneDetect* self) {
    self->watch = new Watch;
    gst_base_transform_set_passthrough(GST_BASE_TRANSFORM(self), TRUE);
}

} // namespace

GType SceneDetectElementType() {
    return gst_kx_scene_detect_get_type();
}

} // namespace scenedetect
