// Plays and stops a pipeline many times: gstreamer_states COUNT [leak]. With "leak" it leaves a message
// behind.
#include <gst/gst.h>

#include <cstdlib>
#include <string_view>

int main(int argc, char** argv) {
    gst_init(&argc, &argv);
    GstElement* pipeline = gst_parse_launch(
        "videotestsrc ! video/x-raw,width=64,height=64 ! kxscenedetect method=interval interval=1 ! fakesink",
        nullptr);
    const int count = argc > 1 ? std::atoi(argv[1]) : 0;
    for (int i = 0; i < count; ++i) {
        gst_element_set_state(pipeline, i % 2 == 0 ? GST_STATE_PLAYING : GST_STATE_PAUSED);
        if (gst_element_get_state(pipeline, nullptr, nullptr, GST_CLOCK_TIME_NONE) !=
            GST_STATE_CHANGE_SUCCESS)
            return 1;
        gst_element_set_state(pipeline, i % 3 == 0 ? GST_STATE_READY : GST_STATE_NULL);
    }
    gst_element_set_state(pipeline, GST_STATE_NULL);
    if (argc > 2 && argv[2] == std::string_view("leak"))
        gst_message_new_element(GST_OBJECT(pipeline), gst_structure_new_empty("forgotten"));
    gst_object_unref(pipeline);
    gst_deinit();
}
