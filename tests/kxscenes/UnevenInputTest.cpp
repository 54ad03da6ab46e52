// Files whose frames are not one after another: dropped frames, variable rate, a change of line system.
#include "tests/Testing.h"
#include "tests/kxscenes/Material.h"

namespace {

TEST(DroppedFrames, LeaveAGapInAvi) {
    const TempFolder folder;
    // Frames 5, 6 and 40 are missing; an AVI file keeps their places.
    for (const char* codec : {"rawvideo", "dvvideo"}) {
        const auto file = folder / (std::string(codec) + ".avi");
        Clip clip = DvClip("pal-dv");
        clip.encoding = {"-vf",      "select=not(between(n\\,5\\,6)+eq(n\\,40))",
                         "-vsync",   "passthrough",
                         "-c:v",     codec,
                         "-pix_fmt", codec == std::string("rawvideo") ? "yuyv422" : "yuv420p"};
        MakeClip(clip, file);
        const ProcessResult result = RunHost({"--xml", folder / "list.xml", file});
        EXPECT_THAT(Rows(result), ElementsAre("1,0,00:00:00:00,0.000", "2,20,00:00:00:20,0.800",
                                              "3,33,00:00:01:08,1.320", "4,47,00:00:01:22,1.880"));
        // The filter counts the samples that there were.
        EXPECT_THAT(Lines(ReadWhole(folder / "list.xml")),
                    ElementsAre("<SceneList count=\"4\" method=\"Video\">\r", "<Scene pos=\"0\"/>\r",
                                "<Scene pos=\"18\"/>\r", "<Scene pos=\"31\"/>\r", "<Scene pos=\"44\"/>\r",
                                "</SceneList>\r"));
    }
}

TEST(VariableRate, FramesAreOrdinalsAndTimesAreStamps) {
    const TempFolder folder;
    // 40 ms a frame up to frame 30, 100 ms from there: frame 33 shows at 1.2 + 0.3 s, frame 47 at 2.9 s.
    Clip clip;
    clip.encoding = Words("-vf setpts='if(lt(N,30),N/25,1.2+(N-30)/10)/TB' -vsync vfr -enc_time_base 1/1000 "
                          "-c:v libx264 -preset veryfast -video_track_timescale 90000");
    MakeClip(clip, folder / "clip.mp4");
    clip.encoding.resize(clip.encoding.size() - 2);
    MakeClip(clip, folder / "clip.mkv");
    // Without a usual rate anywhere in it the library takes the stamps' unit for one.
    clip.encoding[1] = "setpts='(if(lt(N,30),N/25,1.2+(N-30)/10)+if(eq(N,0)+eq(N,20)+eq(N,33)+eq(N,47),0,"
                       "0.007*mod(N,3)))/TB'";
    MakeClip(clip, folder / "rateless.mkv");
    for (const char* name : {"clip.mp4", "clip.mkv", "rateless.mkv"}) {
        const ProcessResult result = RunHost({folder / name});
        EXPECT_EQ(Frames(result), (std::vector<std::int64_t>{0, 20, 33, 47})) << name;
        std::vector<std::string> seconds;
        for (const std::string& row : Rows(result))
            seconds.push_back(row.substr(row.rfind(',') + 1));
        EXPECT_THAT(seconds, ElementsAre("0.000", "0.800", "1.500", "2.900")) << name;
    }
}

} // namespace
