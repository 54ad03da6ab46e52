#include "gstreamer/FrameLayout.h"

#include <algorithm>
#include <iterator>
#include <vector>

namespace scenedetect {
namespace {

constexpr const char* kDvCaps = "video/x-dv";

/// How a pixel format is read.
struct Reading {
    std::int32_t format;
    std::int32_t shift;
    gsize pixelBytes;
};

std::optional<Reading> FindLuma(const GstVideoFormatInfo& info) {
    const guint depth = info.depth[0];
    const gint pitch = info.pixel_stride[0];
    if (info.plane[0] != 0)
        return std::nullopt;
    if (depth == 8 && pitch == 1 && info.poffset[0] == 0)
        return Reading{KXSCENES_LUMA8, 0, 1};
    if (depth == 8 && pitch == 2 && info.n_planes == 1)
        return Reading{info.poffset[0] == 0 ? KXSCENES_YUY2 : KXSCENES_UYVY, 0, 2};
    const bool isMachineOrder =
        GST_VIDEO_FORMAT_INFO_IS_LE(&info) == (G_BYTE_ORDER == G_LITTLE_ENDIAN ? TRUE : FALSE);
    if (depth > 8 && pitch == 2 && isMachineOrder)
        return Reading{KXSCENES_LUMA16, static_cast<std::int32_t>(info.shift[0] + depth) - 8, 2};
    return std::nullopt;
}

/// The order of the components makes no difference, nor does the place of the unused byte: all bytes of a
/// block's pixels are summed.
std::optional<Reading> FindRgb(const GstVideoFormatInfo& info) {
    const bool areBytes = std::all_of(info.depth, info.depth + 3, [](guint depth) { return depth == 8; });
    if (info.n_components != 3 || info.n_planes != 1 || !areBytes)
        return std::nullopt;
    if (info.pixel_stride[0] == 3)
        return Reading{KXSCENES_RGB24, 0, 3};
    return info.pixel_stride[0] == 4 ? std::optional(Reading{KXSCENES_RGB32, 0, 4}) : std::nullopt;
}

std::optional<Reading> FindReading(GstVideoFormat format) {
    const GstVideoFormatInfo& info = *gst_video_format_get_info(format);
    constexpr int kNotByPixels =
        GST_VIDEO_FORMAT_FLAG_COMPLEX | GST_VIDEO_FORMAT_FLAG_TILED | GST_VIDEO_FORMAT_FLAG_PALETTE;
    if ((info.flags & kNotByPixels) != 0)
        return std::nullopt;
    if (GST_VIDEO_FORMAT_INFO_IS_YUV(&info) || GST_VIDEO_FORMAT_INFO_IS_GRAY(&info))
        return FindLuma(info);
    return GST_VIDEO_FORMAT_INFO_IS_RGB(&info) ? FindRgb(info) : std::nullopt;
}

} // namespace

GstCaps* WatchableCaps() {
    guint count = 0;
    const GstVideoFormat* all = gst_video_formats_raw(&count);
    std::vector<GstVideoFormat> readable;
    std::copy_if(all, all + count, std::back_inserter(readable), FindReading);
    GstCaps* caps = gst_video_make_raw_caps(readable.data(), static_cast<guint>(readable.size()));
    gst_caps_append(caps, gst_caps_new_simple(kDvCaps, "systemstream", G_TYPE_BOOLEAN, FALSE, nullptr));
    return caps;
}

std::optional<FrameLayout> LayoutOf(const GstCaps* caps) {
    FrameLayout layout;
    const GstStructure* structure = gst_caps_get_structure(caps, 0);
    if (gst_structure_has_name(structure, kDvCaps)) {
        gst_structure_get_int(structure, "width", &layout.width);
        gst_structure_get_int(structure, "height", &layout.height);
        return layout;
    }
    GstVideoInfo info;
    if (!gst_video_info_from_caps(&info, caps))
        return std::nullopt;
    const auto reading = FindReading(GST_VIDEO_INFO_FORMAT(&info));
    if (!reading)
        return std::nullopt;
    layout.video = GST_VIDEO_INFO_FORMAT(&info);
    layout.width = info.width;
    layout.height = info.height;
    layout.format = reading->format;
    layout.shift = reading->shift;
    layout.rowBytes = static_cast<gsize>(info.width) * reading->pixelBytes;
    layout.offset = info.offset[0];
    layout.stride = info.stride[0];
    return layout;
}

MappedFrame::MappedFrame(const FrameLayout& layout, GstBuffer* buffer) : m_buffer(buffer) {
    m_frame.struct_size = sizeof m_frame;
    m_frame.format = layout.format;
    m_frame.time = KXSCENES_NO_TIME;
    if (layout.format == KXSCENES_DV)
        MapDv();
    else
        MapPicture(layout);
}

MappedFrame::~MappedFrame() {
    if (m_isMapped)
        gst_buffer_unmap(m_buffer, &m_map);
}

void MappedFrame::MapDv() {
    m_isMapped = gst_buffer_map(m_buffer, &m_map, GST_MAP_READ) != FALSE;
    if (!m_isMapped || m_map.size > G_MAXINT32)
        return;
    m_frame.dv_size = static_cast<std::int32_t>(m_map.size);
    m_frame.data = m_map.data;
}

/// Only the memory that the rows lie in is mapped: the chroma may lie elsewhere, or be missing.
void MappedFrame::MapPicture(const FrameLayout& layout) {
    const GstVideoMeta* meta = gst_buffer_get_video_meta(m_buffer);
    const gsize offset = meta ? meta->offset[0] : layout.offset;
    const gint stride = meta ? meta->stride[0] : layout.stride;
    if (stride <= 0)
        return;
    const gsize bytes = static_cast<gsize>(layout.height - 1) * static_cast<gsize>(stride) + layout.rowBytes;
    guint index = 0;
    guint count = 0;
    gsize skip = 0;
    if (!gst_buffer_find_memory(m_buffer, offset, bytes, &index, &count, &skip))
        return;
    m_isMapped =
        gst_buffer_map_range(m_buffer, index, static_cast<gint>(count), &m_map, GST_MAP_READ) != FALSE;
    if (!m_isMapped)
        return;
    m_frame.width = layout.width;
    m_frame.height = layout.height;
    m_frame.shift = layout.shift;
    m_frame.stride = stride;
    m_frame.data = m_map.data + skip;
}

} // namespace scenedetect
