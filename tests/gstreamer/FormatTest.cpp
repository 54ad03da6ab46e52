// Luma is read where it lies in each format, with and without a GstVideoMeta: a step of 16 is a cut, and
// nothing less would be, so that a part of it that is read elsewhere is missed. It leaves the low bits as
// they are.
#include "tests/gstreamer/ElementHarness.h"

#include <gmock/gmock.h>

#include <cstring>
#include <functional>
#include <random>

namespace scenedetect::testing_support {
namespace {

using testing::ElementsAre;

constexpr int kWidth = 324; // 40 blocks, and columns that belong to none
constexpr int kHeight = 250;
constexpr int kBlockColumns = 320;
constexpr int kBlockRows = 248;

/// Writes a pixel of this level at the column of a row.
using WritePixel = void (*)(guint8* row, int x, unsigned level);

/// With its low bits set, which must not count.
template <int shift>
void WriteWord(guint8* row, int x, unsigned level) {
    const auto word = static_cast<guint16>(level << shift | ((1U << shift) - 1));
    std::memcpy(row + 2 * x, &word, sizeof word);
}
template <int pitch, int offset>
void WriteByte(guint8* row, int x, unsigned level) {
    row[pitch * x + offset] = static_cast<guint8>(level);
}
template <int pitch>
void WriteAll(guint8* row, int x, unsigned level) {
    std::memset(row + pitch * x, static_cast<int>(level), pitch);
}

struct Format {
    const char* name;
    WritePixel write;
    bool isGapRead = false; ///< bytes between rows are looked at
};
std::string NameOf(const testing::TestParamInfo<Format>& each) {
    return each.param.name;
}

class Formats : public testing::TestWithParam<Format> {
  protected:
    /// Everything that is not luma in whole blocks is noise.
    GstBuffer* Picture(unsigned level, gsize offset, gsize stride, gsize bytes) {
        std::vector<guint8> data(bytes);
        std::generate(data.begin(), data.end(), [this] { return static_cast<guint8>(m_random()); });
        if (GetParam().isGapRead)
            std::fill(data.begin(), data.end(), static_cast<guint8>(level));
        for (gsize y = 0; y < kBlockRows; ++y)
            for (int x = 0; x < kBlockColumns; ++x)
                GetParam().write(&data[offset + y * stride], x, level);
        return gst_buffer_new_memdup(data.data(), data.size());
    }
    std::vector<int> Scenes(const std::function<GstBuffer*(unsigned level)>& picture) {
        ElementHarness element(m_caps.c_str());
        element.Set("cut-threshold", 15);
        for (int frame = 0; frame < 12; ++frame)
            element.Push(picture(frame < 4 ? 100 : frame < 9 ? 116 : 100));
        return element.SceneFrames();
    }

    std::mt19937 m_random{1};
    std::string m_caps =
        std::string("video/x-raw,width=324,height=250,framerate=25/1,format=") + GetParam().name;
    GstVideoInfo m_info = [this] {
        GstVideoInfo info;
        gst_video_info_set_format(&info, gst_video_format_from_string(GetParam().name), kWidth, kHeight);
        return info;
    }();
};

TEST_P(Formats, AsCapsSay) {
    EXPECT_THAT(Scenes([&](unsigned level) {
                    return Picture(level, m_info.offset[0], static_cast<gsize>(m_info.stride[0]),
                                   m_info.size);
                }),
                ElementsAre(0, 4, 9));
}

TEST_P(Formats, AsTheMetaSays) {
    // Plane 0 in a memory of its own, after one of other bytes, and with an odd stride.
    constexpr gsize kBefore = 100;
    constexpr gsize kOffset = 13;
    const gsize stride = static_cast<gsize>(m_info.stride[0]) + 7;
    EXPECT_THAT(Scenes([&](unsigned level) {
                    GstBuffer* picture = Picture(level, kOffset, stride, kOffset + stride * kHeight);
                    gst_buffer_prepend_memory(picture, gst_allocator_alloc(nullptr, kBefore, nullptr));
                    gsize offsets[GST_VIDEO_MAX_PLANES] = {kBefore + kOffset};
                    gint strides[GST_VIDEO_MAX_PLANES] = {static_cast<gint>(stride)};
                    gst_buffer_add_video_meta_full(picture, GST_VIDEO_FRAME_FLAG_NONE,
                                                   GST_VIDEO_INFO_FORMAT(&m_info), kWidth, kHeight,
                                                   GST_VIDEO_INFO_N_PLANES(&m_info), offsets, strides);
                    return picture;
                }),
                ElementsAre(0, 4, 9));
}

INSTANTIATE_TEST_SUITE_P(Cases, Formats,
                         testing::Values(Format{"I420", WriteByte<1, 0>}, Format{"NV12", WriteByte<1, 0>},
                                         Format{"Y41B", WriteByte<1, 0>}, Format{"GRAY8", WriteByte<1, 0>},
                                         Format{"A420", WriteByte<1, 0>}, Format{"YUY2", WriteByte<2, 0>},
                                         Format{"YVYU", WriteByte<2, 0>}, Format{"UYVY", WriteByte<2, 1>},
                                         Format{"I420_10LE", WriteWord<2>}, Format{"I422_12LE", WriteWord<4>},
                                         Format{"P010_10LE", WriteWord<8>}, Format{"GRAY16_LE", WriteWord<8>},
                                         Format{"RGB", WriteAll<3>}, Format{"BGR", WriteAll<3>},
                                         Format{"BGRx", WriteAll<4>, true},
                                         Format{"xRGB", WriteAll<4>, true}),
                         NameOf);

TEST(Caps, TakeWhatCanBeReadOnly) {
    GstElementFactory* factory = gst_element_factory_find("kxscenedetect");
    ASSERT_TRUE(factory);
    const auto takes = [&](const char* text) {
        GstCaps* caps = gst_caps_from_string(text);
        const bool result = gst_element_factory_can_sink_any_caps(factory, caps) != FALSE;
        gst_caps_unref(caps);
        return result;
    };
    for (const char* caps : {"video/x-raw,format=NV21", "video/x-raw,format=I420,interlace-mode=interleaved",
                             "video/x-dv,systemstream=false"})
        EXPECT_TRUE(takes(caps)) << caps;
    // Words in the other order, other places and depths of luma, tiles, alpha, palettes, memory of devices.
    for (const char* caps : {"video/x-raw,format=I420_10BE", "video/x-raw,format=AYUV",
                             "video/x-raw,format=v210", "video/x-raw,format=NV12_64Z32",
                             "video/x-raw,format=BGRA", "video/x-raw,format=RGB8P", "video/x-raw,format=GBR",
                             "video/x-raw(memory:GLMemory),format=I420", "video/x-dv,systemstream=true"})
        EXPECT_FALSE(takes(caps)) << caps;
    gst_object_unref(factory);
}

} // namespace
} // namespace scenedetect::testing_support
