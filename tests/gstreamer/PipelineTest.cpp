// The element in pipelines: the scenes of tapes and films are those of the program, and nothing is left
// behind.
#include "tests/gstreamer/ElementHarness.h"
#include "tests/kxscenes/HostProcess.h"
#include "tests/kxscenes/Material.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>

namespace scenedetect::testing_support {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

/// Plays to the end, and gives its scenes' structures as text.
std::vector<std::string> Play(const std::string& description) {
    GstElement* pipeline = gst_parse_launch(description.c_str(), nullptr);
    GstBus* bus = gst_element_get_bus(pipeline);
    gst_element_set_state(pipeline, GST_STATE_PLAYING);
    std::vector<std::string> scenes;
    for (bool isOver = false; !isOver;) {
        GstMessage* message = gst_bus_timed_pop(bus, GST_CLOCK_TIME_NONE);
        EXPECT_NE(GST_MESSAGE_TYPE(message), GST_MESSAGE_ERROR);
        isOver = (GST_MESSAGE_TYPE(message) & (GST_MESSAGE_EOS | GST_MESSAGE_ERROR)) != 0;
        const GstStructure* told = gst_message_get_structure(message);
        if (GST_MESSAGE_TYPE(message) == GST_MESSAGE_ELEMENT &&
            gst_structure_has_name(told, "kxscenedetect")) {
            gchar* text = gst_structure_to_string(told);
            scenes.emplace_back(text);
            g_free(text);
        }
        gst_message_unref(message);
    }
    gst_element_set_state(pipeline, GST_STATE_NULL);
    gst_object_unref(bus);
    gst_object_unref(pipeline);
    return scenes;
}

std::vector<std::int64_t> FramesIn(const std::vector<std::string>& scenes) {
    std::vector<std::int64_t> frames;
    for (const std::string& scene : scenes) {
        const std::string field = "frame=(int)";
        frames.push_back(std::stoll(scene.substr(scene.find(field) + field.size())));
    }
    return frames;
}

std::string FromTape(const std::filesystem::path& tape, const std::string& method) {
    return "filesrc location=" + tape.string() +
           " ! dvdemux name=demux demux.video ! kxscenedetect method=" + method + " ! fakesink";
}

class Tape : public testing::TestWithParam<const char*> {};

TEST_P(Tape, HasTheScenesOfTheProgramWithTheirTimes) {
    const bool isPal = GetParam() == std::string("pal-dv");
    const TempFolder folder;
    const auto tape = folder / "tape.dv";
    MakeClip(DvClip(GetParam(), "2004-07-17T10:30:00", isPal ? "00:00:00:00" : "00:00:00;00"),
             folder / "first.dv");
    MakeClip(DvClip(GetParam(), "2004-07-18T09:15:20"), folder / "second.dv");
    std::ofstream(tape, std::ios::binary)
        << ReadWhole(folder / "first.dv") << ReadWhole(folder / "second.dv");

    const auto video = Play(FromTape(tape, "video"));
    EXPECT_EQ(FramesIn(video), Frames(RunHost({"--method", "video", tape})));
    ASSERT_GE(video.size(), 4U);
    EXPECT_THAT(video[1], HasSubstr("frame=(int)20, "));
    EXPECT_THAT(video[1], HasSubstr("recorded=(datetime)2004-07-17T10:30:00"));
    EXPECT_THAT(video[1], HasSubstr(isPal ? "timecode=(GstVideoTimeCode)00:00:00:20"
                                          : "timecode=(GstVideoTimeCode)00:00:00;20"));
    EXPECT_THAT(video[1],
                HasSubstr(isPal ? "timestamp=(guint64)800000000," : "timestamp=(guint64)667333333,"));

    const auto recordings = Play(FromTape(tape, "timestamp"));
    EXPECT_THAT(FramesIn(recordings), ElementsAre(0, 60));
    EXPECT_THAT(recordings.back(), HasSubstr("recorded=(datetime)2004-07-18T09:15:20"));
    const auto untold = Play(FromTape(tape, "timestamp read-timecode=false"));
    EXPECT_THAT(FramesIn(untold), ElementsAre(0, 60));
    EXPECT_THAT(untold.back(), Not(HasSubstr("recorded")));
}

INSTANTIATE_TEST_SUITE_P(Systems, Tape, testing::Values("pal-dv", "ntsc-dv"),
                         [](const auto& each) { return std::string(each.param, 3); });

TEST(Tape, ShortFramesCountAndShowNothing) {
    ElementHarness element("video/x-dv,systemstream=false,format=PAL,width=720,height=576,framerate=25/1");
    for (const gsize bytes : {144000, 1, 119999})
        element.Push(gst_buffer_new_allocate(nullptr, bytes, nullptr));
    EXPECT_EQ(element.Get("frames"), 3);
    EXPECT_EQ(TakeMessages(element.Bus(), GST_MESSAGE_WARNING).size(), 1U);
}

TEST(Film, HasTheScenesOfTheProgramAlsoWhenCropped) {
    const TempFolder folder;
    Clip clip;
    clip.encoding = {"-c:v", "libx264", "-pix_fmt", "yuv420p"};
    MakeClip(clip, folder / "film.mp4");
    const std::string decoded = "filesrc location=" + (folder / "film.mp4").string() + " ! decodebin ! ";
    EXPECT_EQ(FramesIn(Play(decoded + "kxscenedetect ! fakesink")), Frames(RunHost({folder / "film.mp4"})));
    EXPECT_THAT(FramesIn(Play(decoded + "videocrop left=13 top=7 right=3 ! kxscenedetect ! fakesink")),
                ElementsAre(0, 20, 33, 47));
}

TEST(States, ChangeOftenWithoutALeak) {
    ProcessSetup setup;
    setup.environment = {
        {"GST_TRACERS", "leaks"}, {"GST_DEBUG", "GST_TRACER:7"}, {"GST_DEBUG_NO_COLOR", "1"}};
    const auto often = Process({GSTREAMER_STATES, "1000"}, setup).Wait();
    EXPECT_EQ(often.exitCode, 0);
    EXPECT_THAT(often.err, Not(HasSubstr("object-alive, type-name=(string)Gst")));
    // That a leak would be seen.
    EXPECT_THAT(Process({GSTREAMER_STATES, "1", "leak"}, setup).Wait().err,
                HasSubstr("object-alive, type-name=(string)Gst"));
}

} // namespace
} // namespace scenedetect::testing_support
