#include "reading/media/OpenPictures.h"
#include "reading/ffmpeg/FfmpegLog.h"
#include "tests/MessageOf.h"
#include "tests/Testing.h"
#include "tests/kxscenes/Material.h"

#include <sys/stat.h>

#include <fstream>

namespace {

const std::atomic<bool> kGoOn = false;

// Reads all pictures; what is said on the way, and in the last line which there were.
std::string WhatIsRead(const std::filesystem::path& file, int threads = 0) {
    CaptureFfmpegLog();
    testing::internal::CaptureStderr();
    Console console("test");
    const auto reader = OpenPictures(file.native(), {kGoOn, console, threads}, {});
    std::string frames;
    for (Picture picture; reader->Next(picture);)
        frames += std::to_string(picture.place.frame) + ' ';
    return testing::internal::GetCapturedStderr() + frames;
}

// Cut short, it lacks the index at its end, by which the libraries know how long it is.
TEST(OpenPictures, DamageInAnAviFileIsToldWhereItIsHoweverManyThreadsDecode) {
    TempFolder folder;
    const std::filesystem::path file = folder / "film.avi";
    RunFfmpeg({"-f", "lavfi", "-i", "testsrc2=s=1280x720:r=25:d=1", "-f", "lavfi", "-i",
               "anoisesrc=r=48000:d=1:seed=7", "-c:v", "mjpeg", "-c:a", "pcm_s16le", file});
    EXPECT_THAT(WhatIsRead(file), StartsWith("0 1 2 "));
    std::string bytes = ReadWhole(file);
    std::size_t picture = 0;
    for (int i = 0; i < 6; ++i)
        picture = bytes.find("\xff\xd8\xff", picture + 1);
    bytes.replace(picture, 512, 512, 'x');
    std::ofstream(file, std::ios::binary) << bytes.substr(0, bytes.size() / 2);
    const std::string told = WhatIsRead(file, 1);
    EXPECT_THAT(told, AllOf(HasSubstr("film.avi: damaged picture data near frame 4 left out"),
                            HasSubstr("film.avi: breaks off: the end that it announces is missing"),
                            HasSubstr("0 1 2 3 4 6 ")));
    EXPECT_EQ(WhatIsRead(file, 2), told);
}

TEST(OpenPictures, APipeThatWouldHaveToBeReadBackwardIsRefusedWithAdvice) {
    CaptureFfmpegLog();
    TempFolder folder;
    const std::filesystem::path film = folder / "film.mp4";
    const std::filesystem::path front = folder / "front.mp4";
    RunFfmpeg({"-f", "lavfi", "-i", "testsrc2=s=160x120:r=25:d=1", "-c:v", "mpeg4", film});
    RunFfmpeg({"-i", film, "-c", "copy", "-movflags", "+faststart", front});
    const std::filesystem::path pipe = folder / "pipe";
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    Console console("test");
    const std::pair<std::filesystem::path, Matcher<std::string>> cases[] = {
        {film, HasSubstr("pipe: no picture can be read; the index of this file lies after its pictures")},
        {front, IsEmpty()}};
    for (const auto& [file, message] : cases) {
        Process writer({"sh", "-c", "cat \"$0\" > \"$1\"", file, pipe});
        EXPECT_THAT(MessageOf([&] {
                        static_cast<void>(OpenPictures(pipe.native(), {kGoOn, console}, {}));
                    }),
                    message);
        writer.Wait();
    }
}

class UncompressedAvi : public TestWithParam<RawFormat> {};

TEST_P(UncompressedAvi, IsReadInItsFormat) {
    const RawFormat& format = GetParam();
    const TempFolder folder;
    const auto file = folder / "clip.avi";
    Clip clip;
    clip.cuts = {};
    clip.frames = 10; // fewer do not tell the rate
    MakeRawAvi(format, clip, file);

    Console console("test");
    const PictureFormat read = OpenPictures(file, {kGoOn, console}, {})->Format();
    EXPECT_EQ(std::string(reinterpret_cast<const char*>(&read.fourcc), 4), format.fourcc);
    EXPECT_EQ(std::to_string(read.width) + 'x' + std::to_string(std::abs(read.height)), clip.size);
    EXPECT_EQ(read.height < 0, format.name == std::string("RGB24_TopDown"));
    EXPECT_EQ(read.imageBytes,
              static_cast<std::uint32_t>(read.width * std::abs(read.height) * read.bitCount / 8));
    EXPECT_EQ(read.frameDuration, 400'000);
}

INSTANTIATE_TEST_SUITE_P(Cases, UncompressedAvi, ValuesIn(kRawFormats), kByName);

} // namespace
