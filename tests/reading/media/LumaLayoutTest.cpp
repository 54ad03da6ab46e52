#include "reading/media/LumaLayout.h"
#include "platform/CpuFeatures.h"
#include "reading/media/kernels/LumaRows.h"
#include "tests/Testing.h"

extern "C" {
#include <libavutil/pixdesc.h>
}

namespace {

constexpr std::uint8_t kGuard = 0xA5;

struct LumaForm {
    LumaPixels pixels;
    int shift;
};

// The first fault of a kernel: a width, where it or what follows the row differs from the rule.
std::optional<std::size_t> FindFault(LumaRow convert, const LumaForm& form) {
    std::mt19937 random(1);
    const std::size_t bytes = form.pixels == LumaPixels::Words ? 2 : 1;
    for (std::size_t width = 0; width <= 70; ++width) {
        // Without room to spare: the sanitizers see a byte that is read outside.
        std::vector<std::uint8_t> source(bytes * width);
        for (std::uint8_t& byte : source)
            byte = static_cast<std::uint8_t>(random());
        std::vector<std::uint8_t> expected(2 * width + 2, kGuard);
        for (std::size_t x = 0; x < width; ++x) {
            const unsigned word = bytes == 2 ? source[2 * x] | source[2 * x + 1] << 8 : source[x];
            expected[1 + 2 * x] = static_cast<std::uint8_t>(bytes == 2 ? word >> form.shift : word);
            expected[2 + 2 * x] = 0x80;
        }
        std::vector<std::uint8_t> yuy2(2 * width + 2, kGuard);
        convert(source.data(), form.shift, yuy2.data() + 1, width);
        if (yuy2 != expected)
            return width;
    }
    return std::nullopt;
}

TEST(LumaRows, EveryKernelIsExactAtEveryWidthAndStaysInside) {
    for (const LumaForm& form : {LumaForm{LumaPixels::Bytes, 0}, LumaForm{LumaPixels::Words, 0},
                                 LumaForm{LumaPixels::Words, 2}, LumaForm{LumaPixels::Words, 8}}) {
        EXPECT_EQ(FindFault(ScalarLumaRow(form.pixels), form), std::nullopt) << form.shift;
        EXPECT_EQ(FindFault(SelectLumaRow(form.pixels, CpuFeatures()), form), std::nullopt) << form.shift;
        EXPECT_EQ(SelectLumaRow(form.pixels, 0), ScalarLumaRow(form.pixels));
    }
    EXPECT_EQ(SelectLumaRow(LumaPixels::Bytes, CpuFeatures()) == ScalarLumaRow(LumaPixels::Bytes),
              (CpuFeatures() & kCpuSse2) == 0);
}

TEST(LumaRows, ABrokenKernelIsCaught) {
    const LumaRow forgetsTheLast = [](const std::uint8_t* luma, int shift, std::uint8_t* yuy2,
                                      std::size_t width) {
        ScalarLumaRow(LumaPixels::Bytes)(luma, shift, yuy2, width - width / 33);
    };
    EXPECT_EQ(FindFault(forgetsTheLast, {LumaPixels::Bytes, 0}), 33u);
}

struct FrameDeleter {
    void operator()(AVFrame* frame) const { av_frame_free(&frame); }
};
using FramePtr = std::unique_ptr<AVFrame, FrameDeleter>;

std::uint8_t LumaAt(int x, int y) {
    return static_cast<std::uint8_t>(16 + (x * 7 + y * 13) % 200);
}

// A picture whose first component is LumaAt, shifted up to the format's depth; RGB has it in all three.
FramePtr MakeFrame(AVPixelFormat format, int width, int height) {
    FramePtr frame(av_frame_alloc());
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

class LumaLayoutFormats : public TestWithParam<AVPixelFormat> {};

TEST_P(LumaLayoutFormats, TakesLumaOverBitForBit) {
    const FramePtr frame = MakeFrame(GetParam(), 46, 10);
    LumaLayout layout(*frame);
    ASSERT_EQ(layout.Width(), 40);
    ASSERT_EQ(layout.Height(), 10);
    std::vector<std::uint8_t> yuy2(layout.Bytes() + 1, kGuard);
    ASSERT_TRUE(layout.LayOut(*frame, yuy2.data()));
    for (int y = 0; y < 10; ++y)
        for (int x = 0; x < 40; ++x)
            ASSERT_EQ(yuy2[static_cast<std::size_t>(2 * (y * 40 + x))], LumaAt(x, y)) << x << ' ' << y;
    EXPECT_EQ(yuy2.back(), kGuard);
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
    std::vector<std::uint8_t> yuy2(layout.Bytes() + 64);
    ASSERT_TRUE(layout.LayOut(*frame, yuy2.data()));
    for (int y = 0; y < 10; ++y)
        for (int x = 0; x < 40; ++x)
            ASSERT_NEAR(yuy2[static_cast<std::size_t>(2 * (y * 40 + x))], 16 + LumaAt(x, y) * 219 / 255, 2);
}

TEST(LumaLayout, OtherSizesAreScaledToTheFirst) {
    const FramePtr first = MakeFrame(AV_PIX_FMT_YUV420P, 64, 32);
    LumaLayout layout(*first);
    const FramePtr larger = MakeFrame(AV_PIX_FMT_YUV420P, 128, 64);
    for (int y = 0; y < 64; ++y)
        std::fill_n(larger->data[0] + y * larger->linesize[0], 128, std::uint8_t{99});
    std::vector<std::uint8_t> yuy2(layout.Bytes() + 64, kGuard);
    ASSERT_TRUE(layout.LayOut(*larger, yuy2.data()));
    for (std::size_t i = 0; i < layout.Bytes(); i += 2)
        ASSERT_NEAR(yuy2[i], 99, 1);
}

TEST(LumaLayout, TinyPicturesKeepTheirColumns) {
    for (const auto& [width, expected] :
         {std::pair(1, 2), std::pair(4, 4), std::pair(7, 6), std::pair(9, 8)}) {
        const FramePtr frame = MakeFrame(AV_PIX_FMT_YUV420P, width, 4);
        LumaLayout layout(*frame);
        EXPECT_EQ(layout.Width(), expected) << width;
        std::vector<std::uint8_t> yuy2(layout.Bytes() + 64);
        EXPECT_TRUE(layout.LayOut(*frame, yuy2.data()));
    }
}

} // namespace
