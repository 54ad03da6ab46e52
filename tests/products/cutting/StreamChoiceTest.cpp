#include "products/muxing/PacketSource.h"
#include "reading/media/MediaInput.h"
#include "tests/Testing.h"
#include "tests/products/cutting/CutMaterial.h"

namespace {

struct ChoiceCase {
    const char* name;
    const char* file;
    std::vector<std::string> streams; // of ffmpeg, after its three inputs
    int stream;                       // the one that is the film
};

const std::vector<std::string> kInputs = {"-f", "lavfi", "-i", "testsrc2=s=64x48:r=25:d=1",
                                          "-f", "lavfi", "-i", "testsrc2=s=160x120:r=25:d=1",
                                          "-f", "lavfi", "-i", "anoisesrc=r=48000:d=1:seed=7"};

const ChoiceCase kChoices[] = {
    {"AudioFirst", "film.mkv", {"-map", "2", "-map", "1", "-c:v", "mjpeg", "-c:a", "pcm_s16le"}, 1},
    {"TheDefaultOne",
     "film.mkv",
     {"-map", "1", "-map", "0", "-c:v", "mjpeg", "-disposition:v:0", "0", "-disposition:v:1", "default"},
     1},
    {"NotTheCover",
     "film.mp4",
     {"-map", "0", "-map", "1", "-c:v:0", "mpeg4", "-c:v:1", "mjpeg", "-frames:v:1", "1", "-disposition:v:1",
      "attached_pic"},
     0},
    {"TimecodeOfTheFile",
     "film.mov",
     {"-map", "2", "-map", "1", "-c:v", "mjpeg", "-timecode", "01:02:03:04"},
     1},
};

// Clips are cut from the pictures that the scenes were found in.
TEST(StreamChoice, BothReadersOfAMediaFileChooseTheSameStream) {
    CaptureFfmpegLog();
    TempFolder folder;
    for (const ChoiceCase& each : kChoices) {
        SCOPED_TRACE(each.name);
        std::vector<std::string> arguments = kInputs;
        arguments.insert(arguments.end(), each.streams.begin(), each.streams.end());
        const std::filesystem::path file = folder / (each.name + std::string("-") + each.file);
        arguments.push_back(file.string());
        RunFfmpeg(arguments);
        MediaInput input(file.native());
        input.FindVideo();
        const PacketSource source(file.native());
        EXPECT_EQ(input.Video().index, each.stream);
        EXPECT_EQ(source.Video().index, each.stream);
        const bool hasTimecode = source.Timecode() == "01:02:03:04";
        EXPECT_EQ(hasTimecode, file.extension() == ".mov");
        EXPECT_EQ(input.Info().startTimecode.has_value(), hasTimecode);
    }
}

// There is a demuxer that draws text.
TEST(StreamChoice, NoReaderTakesTextForVideo) {
    CaptureFfmpegLog();
    TempFolder folder;
    const std::filesystem::path text = folder / "film.ans";
    WriteBytes(text, std::string(2000, 'a'));
    EXPECT_THAT(MessageOf([&] { MediaInput(text.native()).FindVideo(); }), HasSubstr("no video stream"));
    EXPECT_THAT(MessageOf([&] { PacketSource source(text.native()); }), HasSubstr("no video stream"));
}

} // namespace
