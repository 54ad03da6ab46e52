#include "gstreamer/SceneMessage.h"

#include "gstreamer/MethodType.h"

#include <gst/video/video.h>

namespace scenedetect {
namespace {

constexpr gsize kDv625Bytes = 144000;

/// The camera's clock knows no time zone; as with other media, it is taken for the local one. Null without a
/// date.
GstDateTime* RecordedTime(const kxscenes_recorded& recorded) {
    if (recorded.year < 0)
        return nullptr;
    if (recorded.hours < 0)
        return gst_date_time_new_ymd(recorded.year, recorded.month, recorded.day);
    return gst_date_time_new_local_time(recorded.year, recorded.month, recorded.day, recorded.hours,
                                        recorded.minutes, recorded.seconds);
}

/// Null when there is none, or one that no clock of the line system can show.
GstVideoTimeCode* TimeCode(const kxscenes_timecode& code, bool is625) {
    if (code.hours < 0)
        return nullptr;
    const bool isDropFrame = code.drop_frame != 0 && !is625;
    GstVideoTimeCode* result = gst_video_time_code_new(
        is625 ? 25 : 30000, is625 ? 1 : 1001, nullptr,
        isDropFrame ? GST_VIDEO_TIME_CODE_FLAGS_DROP_FRAME : GST_VIDEO_TIME_CODE_FLAGS_NONE,
        static_cast<guint>(code.hours), static_cast<guint>(code.minutes), static_cast<guint>(code.seconds),
        static_cast<guint>(code.frames), 0);
    if (gst_video_time_code_is_valid(result))
        return result;
    gst_video_time_code_free(result);
    return nullptr;
}

/// Hands the boxed `value` over to the structure, unless it is null.
void Add(GstStructure* structure, const char* name, GType type, gpointer boxed) {
    if (!boxed)
        return;
    GValue value = G_VALUE_INIT;
    g_value_init(&value, type);
    g_value_take_boxed(&value, boxed);
    gst_structure_take_value(structure, name, &value);
}

} // namespace

BufferMoment MomentOf(GstBuffer* buffer, const GstSegment& segment) {
    BufferMoment moment{.timestamp = GST_BUFFER_PTS(buffer),
                        .duration = GST_BUFFER_DURATION(buffer),
                        .bytes = gst_buffer_get_size(buffer)};
    if (segment.format == GST_FORMAT_TIME && GST_CLOCK_TIME_IS_VALID(moment.timestamp)) {
        moment.runningTime = gst_segment_to_running_time(&segment, GST_FORMAT_TIME, moment.timestamp);
        moment.streamTime = gst_segment_to_stream_time(&segment, GST_FORMAT_TIME, moment.timestamp);
    }
    return moment;
}

GstStructure* DescribeScene(const kxscenes_scene& scene, const BufferMoment& moment) {
    GstStructure* structure =
        gst_structure_new("kxscenedetect", "frame", G_TYPE_INT, scene.frame, "timestamp", GST_TYPE_CLOCK_TIME,
                          moment.timestamp, "duration", GST_TYPE_CLOCK_TIME, moment.duration, "running-time",
                          GST_TYPE_CLOCK_TIME, moment.runningTime, "stream-time", GST_TYPE_CLOCK_TIME,
                          moment.streamTime, "method", MethodType(), scene.method, nullptr);
    Add(structure, "recorded", GST_TYPE_DATE_TIME, RecordedTime(scene.recorded));
    Add(structure, "timecode", GST_TYPE_VIDEO_TIME_CODE,
        TimeCode(scene.timecode, moment.bytes >= kDv625Bytes));
    return structure;
}

} // namespace scenedetect
