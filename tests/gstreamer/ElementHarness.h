// The element by itself: buffers go in, and what it tells is read from its bus.
#pragma once

#include <gst/check/gstharness.h>
#include <gst/video/video.h>

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace scenedetect::testing_support {

inline const bool kIsInitialized = (gst_init(nullptr, nullptr), true);

struct FreeStructure {
    void operator()(GstStructure* structure) const { gst_structure_free(structure); }
};
using Structure = std::unique_ptr<GstStructure, FreeStructure>;

inline guint64 ClockTimeOf(const Structure& structure, const char* field) {
    guint64 time = GST_CLOCK_TIME_NONE;
    gst_structure_get_uint64(structure.get(), field, &time);
    return time;
}

/// The structures of all messages of this kind that wait on the bus; other messages are dropped.
inline std::vector<Structure> TakeMessages(GstBus* bus, GstMessageType type) {
    std::vector<Structure> taken;
    while (GstMessage* message = gst_bus_pop(bus)) {
        if (GST_MESSAGE_TYPE(message) == type)
            taken.emplace_back(gst_structure_copy(gst_message_get_structure(message)));
        gst_message_unref(message);
    }
    return taken;
}

class ElementHarness {
  public:
    explicit ElementHarness(const char* caps) : m_harness(gst_harness_new("kxscenedetect")) {
        gst_element_set_bus(Element(), m_bus);
        gst_harness_set_src_caps_str(m_harness, caps);
    }
    ~ElementHarness() {
        gst_harness_teardown(m_harness);
        gst_object_unref(m_bus);
    }
    ElementHarness(const ElementHarness&) = delete;
    ElementHarness& operator=(const ElementHarness&) = delete;

    [[nodiscard]] GstHarness* Harness() { return m_harness; }
    [[nodiscard]] GstElement* Element() { return m_harness->element; }
    void SetCaps(const char* caps) { gst_harness_set_src_caps_str(m_harness, caps); }
    void Send(GstEvent* event) { EXPECT_TRUE(gst_harness_push_event(m_harness, event)); }
    void Flush() {
        Send(gst_event_new_flush_start());
        Send(gst_event_new_flush_stop(TRUE));
        GstSegment segment;
        gst_segment_init(&segment, GST_FORMAT_TIME);
        Send(gst_event_new_segment(&segment));
    }
    template <typename Value>
    void Set(const char* property, Value value) {
        g_object_set(Element(), property, value, nullptr);
    }
    [[nodiscard]] int Get(const char* property) {
        int value = -1;
        g_object_get(Element(), property, &value, nullptr);
        return value;
    }
    /// The buffer is given away, and has to come out as the same, unchanged.
    void Push(GstBuffer* buffer) {
        const GstBuffer* const same = buffer;
        gst_buffer_ref(buffer); // so that nobody may write to it
        EXPECT_EQ(gst_harness_push(m_harness, buffer), GST_FLOW_OK);
        GstBuffer* out = gst_harness_try_pull(m_harness);
        EXPECT_EQ(out, same);
        gst_buffer_unref(out);
        gst_buffer_unref(buffer);
    }
    /// Messages since the last call.
    [[nodiscard]] std::vector<int> SceneFrames() {
        std::vector<int> frames;
        for (const Structure& scene : TakeMessages(m_bus, GST_MESSAGE_ELEMENT)) {
            EXPECT_STREQ(gst_structure_get_name(scene.get()), "kxscenedetect");
            gst_structure_get_int(scene.get(), "frame", &frames.emplace_back());
        }
        return frames;
    }
    [[nodiscard]] GstBus* Bus() { return m_bus; }

  private:
    GstHarness* m_harness;
    GstBus* m_bus = gst_bus_new();
};

/// A grey picture of 64 x 48.
inline constexpr const char* kGreyCaps = "video/x-raw,format=GRAY8,width=64,height=48,framerate=25/1";
inline GstBuffer* GreyBuffer(guint8 level, GstClockTime time = GST_CLOCK_TIME_NONE) {
    GstBuffer* buffer = gst_buffer_new_allocate(nullptr, 64 * 48, nullptr);
    gst_buffer_memset(buffer, 0, level, 64 * 48);
    GST_BUFFER_PTS(buffer) = time;
    return buffer;
}

} // namespace scenedetect::testing_support
