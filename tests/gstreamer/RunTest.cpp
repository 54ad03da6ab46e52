// When a run begins, the times of its scenes, what can be changed while it lasts, and that buffers pass
// untouched.
#include "tests/gstreamer/ElementHarness.h"

#include <gmock/gmock.h>

namespace scenedetect::testing_support {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

enum Method { kTimestamp, kVideo, kInterval, kManual };

class Run : public testing::Test {
  protected:
    void PushGrey(int count) {
        for (int i = 0; i < count; ++i)
            m_element.Push(GreyBuffer(100));
    }
    GstSegment Segment(GstClockTime start, GstClockTime time, GstClockTime base) {
        GstSegment segment;
        gst_segment_init(&segment, GST_FORMAT_TIME);
        segment.start = segment.position = start;
        segment.time = time;
        segment.base = base;
        return segment;
    }

    ElementHarness m_element{kGreyCaps};
};

// --- runs ---

TEST_F(Run, BeginsAfterFlushAndChangeOfPicturesOnly) {
    m_element.Set("method", kManual);
    PushGrey(3);
    EXPECT_THAT(m_element.SceneFrames(), ElementsAre(0));

    // Discontinuities, gaps, other segments and rates are none of its business.
    GstBuffer* late = GreyBuffer(100, 9 * GST_SECOND);
    GST_BUFFER_FLAG_SET(late, GST_BUFFER_FLAG_DISCONT);
    m_element.Push(late);
    m_element.Send(gst_event_new_gap(0, GST_SECOND));
    const GstSegment segment = Segment(GST_SECOND, 0, 0);
    m_element.Send(gst_event_new_segment(&segment));
    m_element.SetCaps("video/x-raw,format=GRAY8,width=64,height=48,framerate=50/1,pixel-aspect-ratio=16/15");
    PushGrey(2);
    EXPECT_THAT(m_element.SceneFrames(), IsEmpty());
    EXPECT_EQ(m_element.Get("frames"), 6);

    m_element.Flush();
    PushGrey(2);
    EXPECT_THAT(m_element.SceneFrames(), ElementsAre(0));
    EXPECT_EQ(m_element.Get("frames"), 2);
    EXPECT_EQ(m_element.Get("scenes"), 1);

    for (const char* caps : {"video/x-raw,format=GRAY8,width=48,height=64,framerate=25/1",
                             "video/x-raw,format=NV12,width=48,height=40,framerate=25/1"}) {
        m_element.SetCaps(caps);
        PushGrey(1);
        EXPECT_THAT(m_element.SceneFrames(), ElementsAre(0)) << caps;
        EXPECT_EQ(m_element.Get("frames"), 1) << caps;
    }

    m_element.Send(gst_event_new_eos());
    m_element.Send(gst_event_new_stream_start("another"));
    PushGrey(1);
    EXPECT_THAT(m_element.SceneFrames(), ElementsAre(0));
}

// --- times ---

TEST_F(Run, ScenesBearTheTimesOfTheirOwnBuffers) {
    // After a seek to 10 s of a stream that started 3 s ago; the cut at frame 4 is known at frame 6.
    m_element.Flush();
    const GstSegment first = Segment(10 * GST_SECOND, 2 * GST_SECOND, 3 * GST_SECOND);
    const GstSegment second = Segment(100 * GST_SECOND, 50 * GST_SECOND, 4 * GST_SECOND);
    m_element.Send(gst_event_new_segment(&first));
    for (guint i = 0; i < 9; ++i) {
        if (i == 5)
            m_element.Send(gst_event_new_segment(&second));
        GstBuffer* buffer = GreyBuffer(i < 4 ? 100 : 150,
                                       (i < 5 ? 10 * GST_SECOND : 100 * GST_SECOND) + i * 40 * GST_MSECOND);
        GST_BUFFER_DURATION(buffer) = (i + 1) * GST_MSECOND;
        m_element.Push(buffer);
    }
    const auto scenes = TakeMessages(m_element.Bus(), GST_MESSAGE_ELEMENT);
    ASSERT_EQ(scenes.size(), 2U);
    GstClockTime offset = 0;
    for (const Structure& scene : scenes) {
        EXPECT_EQ(ClockTimeOf(scene, "timestamp"), 10 * GST_SECOND + offset);
        EXPECT_EQ(ClockTimeOf(scene, "stream-time"), 2 * GST_SECOND + offset);
        EXPECT_EQ(ClockTimeOf(scene, "running-time"), 3 * GST_SECOND + offset);
        EXPECT_EQ(ClockTimeOf(scene, "duration"), offset == 0 ? GST_MSECOND : 5 * GST_MSECOND);
        EXPECT_STREQ(g_enum_get_value(G_ENUM_CLASS(g_type_class_peek(
                                          G_VALUE_TYPE(gst_structure_get_value(scene.get(), "method")))),
                                      kVideo)
                         ->value_nick,
                     "video");
        offset = 4 * 40 * GST_MSECOND;
    }

    m_element.Flush();
    m_element.Push(GreyBuffer(100)); // without a time
    for (const Structure& scene : TakeMessages(m_element.Bus(), GST_MESSAGE_ELEMENT))
        for (const char* field : {"timestamp", "duration", "running-time", "stream-time"})
            EXPECT_EQ(ClockTimeOf(scene, field), GST_CLOCK_TIME_NONE) << field;
}

// --- marks and properties ---

TEST_F(Run, MarksAndSettingsWorkWhileItPlays) {
    m_element.Set("method", kManual);
    PushGrey(5);
    g_signal_emit_by_name(m_element.Element(), "mark");
    PushGrey(2);
    EXPECT_THAT(m_element.SceneFrames(), ElementsAre(0, 5));

    m_element.Set("interval", 4);
    m_element.Set("method", kInterval);
    PushGrey(10); // 7 to 16
    EXPECT_THAT(m_element.SceneFrames(), ElementsAre(8, 12, 16));
    m_element.Set("interval", 9);
    PushGrey(2);
    EXPECT_THAT(m_element.SceneFrames(), ElementsAre(18));

    // Blocks have to be laid out first.
    m_element.Set("method", kVideo);
    PushGrey(4);
    m_element.Push(GreyBuffer(150));
    g_signal_emit_by_name(m_element.Element(), "mark");
    m_element.Push(GreyBuffer(150)); // told two frames late, as all are
    m_element.Push(GreyBuffer(150));
    EXPECT_THAT(m_element.SceneFrames(), ElementsAre(0, 3, 4));

    // What compares pictures stays as it was when the run began.
    m_element.Set("cut-threshold", 60);
    for (const bool isNewRun : {false, true}) {
        if (isNewRun)
            m_element.Flush();
        PushGrey(4);
        for (int i = 0; i < 3; ++i)
            m_element.Push(GreyBuffer(150));
        EXPECT_EQ(m_element.SceneFrames().size(), isNewRun ? 1U : 2U);
        EXPECT_EQ(m_element.Get("cut-threshold"), 60);
    }
}

// --- buffers ---

TEST_F(Run, PassesOnWhatItCannotRead) {
    m_element.Set("method", kManual);
    PushGrey(2);
    m_element.Push(gst_buffer_new());
    m_element.Push(gst_buffer_new_allocate(nullptr, 64 * 48 - 1, nullptr));
    GstBuffer* gap = GreyBuffer(100);
    GST_BUFFER_FLAG_SET(gap, GST_BUFFER_FLAG_GAP);
    m_element.Push(gap);
    EXPECT_EQ(m_element.Get("frames"), 3);
    EXPECT_EQ(TakeMessages(m_element.Bus(), GST_MESSAGE_WARNING).size(), 1U);
}

TEST_F(Run, DropsNothingThatComesLate) {
    m_element.Set("qos", TRUE);
    m_element.Push(GreyBuffer(100, 0));
    EXPECT_TRUE(gst_harness_push_upstream_event(
        m_element.Harness(), gst_event_new_qos(GST_QOS_TYPE_UNDERFLOW, 2.0, 10 * GST_SECOND, 0)));
    m_element.Push(GreyBuffer(100, GST_SECOND));
    bool hasArrived = false;
    while (GstEvent* event = gst_harness_try_pull_upstream_event(m_element.Harness())) {
        hasArrived = hasArrived || GST_EVENT_TYPE(event) == GST_EVENT_QOS;
        gst_event_unref(event);
    }
    EXPECT_TRUE(hasArrived);
}

} // namespace
} // namespace scenedetect::testing_support
