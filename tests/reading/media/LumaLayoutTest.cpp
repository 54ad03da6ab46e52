#include "reading/media/LumaLayout.h"
#include "reading/ffmpeg/FfmpegPointers.h"
#include "tests/Testing.h"

extern "C" {
#include <libavutil/pixdesc.h>
}

namespace {

using FramePtr = FfmpegPtr<AVFrame>;

std::uint8_t LumaAt(int x, int y) {
    return static_cast<std::uint8_t>(16 + (x * 7 + y * 13) % 200);
}

// A picture whose first component is LumaAt, shifted up to the format's depth; RGB has it in all three.
FramePtr MakeFrame(AVPixelFormat format, int width, int height) {
    FramePtr frame = OwnFfmpeg(av_frame_alloc());
    frame->format = format;
    frame->width = width;
    frame->height = height;
    EXPECT_EQ(av_frame_get_buffer(frame.get(), 0), 0);
    for (const AVBufferRef* buffer : frame->buf) // lines are written by "or"
        if (buffer)
            std::memset(buffer->data, 0, buffer->size);
    const AVPixFmtDescriptor* desc = av_pix_fmt_desc_get(format);
    const bool isRgb = (desc->flags & AV_PIX_FMT_FLAG_RGB) != 0;
    std::vector<std::uint16_t> line(static_cast<std::size_t>(width));
    for (int y = 0; y < height; ++y)
        for (int c = 0; c < (isRgb ? 3 : 1); ++c) {
            for (int x = 0; x < width; ++x)
                line[static_cast<std::size_t>(x)] =
                    static_cast<std::uint16_t>(LumaAt(x, y) << (desc->comp[c].depth - 8));
            av_write_image_line(line.data(), frame->data, frame->linesize, desc, 0, y, c, width);
        }
    return frame;
}

// The means of the blocks of a grid.
std::vector<std::uint8_t> Means(const Picture& picture, const LuminanceGrid& grid) {
    std::vector<std::uint8_t> means(static_cast<std::size_t>(grid.width * grid.height), 0xA5);
    ReadLuminance(*picture.Rows(), grid, means.data());
    return means;
}

class LumaLayoutFormats : public TestWithParam<AVPixelFormat> {};

TEST_P(LumaLayoutFormats, TellsWhereEachPixelsLumaLies) {
    const FramePtr frame = MakeFrame(GetParam(), 46, 10);
    const std::uint8_t* const plane = frame->data[0];
    LumaLayout layout(*frame);
    EXPECT_EQ(layout.Width(), 40);
    EXPECT_EQ(layout.Height(), 10);
    Picture picture;
    ASSERT_TRUE(layout.Hold(*frame, picture));
    EXPECT_EQ(picture.Rows()->top, plane) << "is not copied";
    const auto means = Means(picture, {40, 10, 1});
    for (int y = 0; y < 10; ++y)
        for (int x = 0; x < 40; ++x)
            ASSERT_EQ(means[static_cast<std::size_t>(y * 40 + x)], LumaAt(x, y)) << x << ' ' << y;
}

INSTANTIATE_TEST_SUITE_P(Formats, LumaLayoutFormats,
                         Values(AV_PIX_FMT_YUV420P, AV_PIX_FMT_YUVJ422P, AV_PIX_FMT_YUV444P,
                                AV_PIX_FMT_YUVA420P, AV_PIX_FMT_NV12, AV_PIX_FMT_GRAY8, AV_PIX_FMT_YA8,
                                AV_PIX_FMT_YUYV422, AV_PIX_FMT_UYVY422, AV_PIX_FMT_YUV420P10LE,
                                AV_PIX_FMT_YUV422P12LE, AV_PIX_FMT_P010LE, AV_PIX_FMT_GRAY16LE),
                         [](const auto& each) { return std::string(av_get_pix_fmt_name(each.param)); });

TEST(LumaLayout, ConvertsRgb) {
    const FramePtr frame = MakeFrame(AV_PIX_FMT_BGR24, 46, 10);
    LumaLayout layout(*frame);
    Picture picture;
    ASSERT_TRUE(layout.Hold(*frame, picture));
    const auto means = Means(picture, {40, 10, 1});
    for (int y = 0; y < 10; ++y)
        for (int x = 0; x < 40; ++x)
            ASSERT_NEAR(means[static_cast<std::size_t>(y * 40 + x)], 16 + LumaAt(x, y) * 219 / 255, 2);
}

TEST(LumaLayout, OtherSizesAreScaledToTheFirst) {
    const FramePtr first = MakeFrame(AV_PIX_FMT_YUV420P, 64, 32);
    for (const int halvings : {0, 2}) {
        LumaLayout layout(*first, halvings);
        const FramePtr larger = MakeFrame(AV_PIX_FMT_YUV420P, 128, 64);
        for (int y = 0; y < 64; ++y)
            std::fill_n(larger->data[0] + y * larger->linesize[0], 128, std::uint8_t{99});
        Picture picture;
        ASSERT_TRUE(layout.Hold(*larger, picture));
        EXPECT_THAT(Means(picture, {8 << halvings, 4 << halvings, 8}), Each(AllOf(Ge(98), Le(100))));
    }
}

struct SizeCase {
    int width;
    int height;
    int halvings;
    PictureSize announced;
    PictureSize expected;
};

// 1919 columns are 239 blocks of 8; halved three times they are 240, of which the last is no whole block.
TEST(LumaLayout, SizesAreThoseOfTheFullPicture) {
    for (const SizeCase& each :
         {SizeCase{1, 4, 0, {}, {2, 4}}, SizeCase{4, 4, 0, {}, {4, 4}}, SizeCase{7, 4, 0, {}, {6, 4}},
          SizeCase{9, 4, 0, {}, {8, 4}}, SizeCase{9, 4, 0, {720, 576}, {8, 4}},
          SizeCase{240, 135, 3, {1919, 1080}, {1912, 1080}},
          SizeCase{240, 136, 3, {1920, 1081}, {1920, 1081}},
          SizeCase{240, 136, 3, {704, 1085}, {1920, 1085}}}) {
        const FramePtr frame = MakeFrame(AV_PIX_FMT_YUV420P, each.width, each.height);
        LumaLayout layout(*frame, each.halvings, each.announced);
        EXPECT_EQ(layout.Width(), each.expected.width) << each.width;
        EXPECT_EQ(layout.Height(), each.expected.height) << each.height;
        Picture picture;
        EXPECT_TRUE(layout.Hold(*frame, picture));
        EXPECT_EQ(picture.Rows()->halvings, each.halvings);
    }
}

} // namespace
