// Pictures that are passed over by their packets alone, and what decoding goes on with.
#include "reading/ffmpeg/FfmpegLog.h"
#include "reading/media/OpenPictures.h"
#include "reading/media/PictureCount.h"
#include "tests/Testing.h"
#include "tests/kxscenes/Material.h"

#include <algorithm>

namespace {

const std::atomic<bool> kNoStop = false;

struct Packet {
    std::int64_t pts;
    int flags = 0;
    int size = 100;
};

constexpr int kKey = AV_PKT_FLAG_KEY;

struct CountCase {
    const char* name;
    AVCodecID codec;
    std::vector<Packet> packets; // the last of which is refused where no stamps are told
    std::vector<std::int64_t> stamps;
};

class Counting : public TestWithParam<CountCase> {};

TEST_P(Counting, TellsPicturesInTheirOrderOrRefuses) {
    const CountCase& it = GetParam();
    PictureCount count(it.codec);
    AVPacket packet{};
    for (std::size_t i = 0; i < it.packets.size(); ++i) {
        packet.pts = it.packets[i].pts;
        packet.flags = it.packets[i].flags;
        packet.size = it.packets[i].size;
        EXPECT_EQ(count.Add(packet), !it.stamps.empty() || i + 1 < it.packets.size()) << i;
    }
    if (it.stamps.empty())
        return;
    EXPECT_FALSE(count.Next()); // an earlier one may come
    count.End();
    std::vector<std::int64_t> stamps;
    while (const auto told = count.Next())
        stamps.push_back(told->stamp);
    EXPECT_EQ(stamps, it.stamps);
}

constexpr AVCodecID kH264 = AV_CODEC_ID_H264;

INSTANTIATE_TEST_SUITE_P(
    Cases, Counting,
    Values(CountCase{"Reordered", kH264, {{0, kKey}, {4}, {2}, {1}, {3}}, {0, 1, 2, 3, 4}},
           CountCase{"OpenGop", kH264, {{0, kKey}, {1}, {4, kKey}, {2}, {3}}, {0, 1, 2, 3, 4}},
           CountCase{"CutByAnEditList", kH264, {{-2, kKey | AV_PKT_FLAG_DISCARD}, {0}, {1}}, {0, 1}},
           CountCase{"NoStamp", kH264, {{0, kKey}, {AV_NOPTS_VALUE}}, {}},
           CountCase{"StampTwice", kH264, {{0, kKey}, {1}, {1}}, {}},
           CountCase{"NoKeyFrameAtTheBeginning", kH264, {{0}}, {}},
           CountCase{"KeyFrameBeforeWhatWas", kH264, {{0, kKey}, {2}, {1, kKey}}, {}},
           CountCase{"Corrupt", kH264, {{0, kKey}, {1, AV_PKT_FLAG_CORRUPT}}, {}},
           CountCase{"NotCodedInMpeg4", AV_CODEC_ID_MPEG4, {{0, kKey}, {1, 0, 19}}, {}},
           CountCase{"SmallInH264", kH264, {{0, kKey}, {1, 0, 19}}, {0, 1}}),
    kByName);

struct Shown {
    FilePlace place;
    std::vector<std::uint8_t> bytes;
    friend bool operator==(const Shown&, const Shown&) = default;
};

// The pictures of a file without those that were passed over after the first; how many these are.
std::vector<Shown> ReadFrom(const std::filesystem::path& file, std::int64_t frame, std::int64_t& passed) {
    Console console("test");
    const auto reader = OpenPictures(file.native(), {kNoStop, console}, {});
    Picture picture;
    std::vector<Shown> shown;
    while (reader->Next(picture)) {
        shown.push_back({picture.place, {}});
        picture.ForEachRun([&bytes = shown.back().bytes](std::span<const std::uint8_t> run) {
            bytes.insert(bytes.end(), run.begin(), run.end());
        });
        if (shown.size() == 1 && frame != 0)
            passed = reader->PassOver([&](const FilePlace& place) { return place.frame >= frame; });
    }
    return shown;
}

struct SkipCase {
    const char* name;
    const char* encoding;
    bool canSkip = true;
};

class SkippedFiles : public TestWithParam<SkipCase> {};

TEST_P(SkippedFiles, GoOnWithTheSamePictures) {
    CaptureFfmpegLog();
    const TempFolder folder;
    std::vector<std::string> encoding = Words(GetParam().encoding);
    const auto file = folder / encoding.back();
    encoding.pop_back();
    Clip clip;
    clip.size = "160x120";
    clip.frames = 100;
    clip.cuts = {33, 58};
    clip.encoding = encoding;
    MakeClip(clip, file);

    std::int64_t passed = 0;
    const std::vector<Shown> all = ReadFrom(file, 0, passed);
    // Beside key frames and on them, in the last group, after the end.
    for (const std::size_t frame : {39u, 40u, 41u, 97u, 1000u}) {
        passed = 0;
        const std::vector<Shown> rest = ReadFrom(file, static_cast<std::int64_t>(frame), passed);
        EXPECT_EQ(passed != 0, GetParam().canSkip) << frame;
        // The first, those that may have to be read all the same, and the wanted ones.
        ASSERT_EQ(std::ssize(rest) + passed, std::ssize(all)) << frame;
        EXPECT_TRUE(std::equal(rest.begin() + 1, rest.end(), all.begin() + 1 + passed)) << frame;
        EXPECT_TRUE(passed == 0 || rest.size() == 1 + all.size() - std::min(frame, all.size())) << frame;
    }
}

INSTANTIATE_TEST_SUITE_P(
    Codecs, SkippedFiles,
    Values(SkipCase{"H264", "-c:v libx264 -preset veryfast -g 10 clip.mp4"},
           SkipCase{"H264OpenGop",
                    "-c:v libx264 -preset veryfast -x264-params open-gop=1:keyint=10:scenecut=0 clip.ts"},
           SkipCase{"H264VariableRate", "-vf setpts='(N/25+0.01*mod(N,3))/TB' -vsync vfr -enc_time_base "
                                        "1/1000 -c:v libx264 -preset veryfast -g 10 clip.mkv"},
           SkipCase{"HevcOpenGop", "-c:v libx265 -preset ultrafast -x265-params "
                                   "log-level=error:open-gop=1:keyint=10:bframes=3 clip.mkv"},
           SkipCase{"Mpeg2OpenGop", "-c:v mpeg2video -g 10 -bf 2 clip.ts"},
           SkipCase{"Mpeg4", "-c:v mpeg4 -g 10 -bf 2 clip.mp4"},
           SkipCase{"Mpeg4WithoutStamps", "-c:v mpeg4 -g 10 -bf 2 clip.avi", false},
           SkipCase{"Mpeg4NotReordered", "-c:v mpeg4 -g 10 clip.avi"},
           SkipCase{"MotionJpeg", "-c:v mjpeg clip.avi"}, SkipCase{"Wmv2", "-c:v wmv2 -g 10 clip.wmv"},
           SkipCase{"Vp9", "-c:v libvpx-vp9 -g 10 -deadline realtime -cpu-used 8 clip.webm"},
           SkipCase{"Vp8Hidden", "-c:v libvpx -g 10 -auto-alt-ref 1 -lag-in-frames 16 clip.webm", false},
           SkipCase{"NoKeyFrames", "-c:v libx264 -preset veryfast -g 1000 -x264-params scenecut=0 clip.mp4",
                    false}),
    kByName);

} // namespace
