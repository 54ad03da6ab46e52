#include "reading/media/LumaLayout.h"

#include "reading/ffmpeg/FfmpegPointers.h"

extern "C" {
#include <libavutil/pixdesc.h>
#include <libswscale/swscale.h>
}

#include <algorithm>
#include <bit>
#include <optional>

namespace scenedetect {
namespace {

constexpr int kWidthStep = 8;
constexpr int kYuy2Pitch = 2;
// The converter may write a few bytes more than it should.
constexpr std::size_t kBufferSlack = 64;

// How the luma of a format lies in plane 0.
struct LumaSource {
    PixelLayout layout;
    int shift;
};

// Nothing for formats whose luma has to be computed.
std::optional<LumaSource> FindLuma(int format) {
    const AVPixFmtDescriptor* desc = av_pix_fmt_desc_get(static_cast<AVPixelFormat>(format));
    constexpr std::uint64_t kOther = AV_PIX_FMT_FLAG_RGB | AV_PIX_FMT_FLAG_PAL | AV_PIX_FMT_FLAG_BITSTREAM |
                                     AV_PIX_FMT_FLAG_HWACCEL | AV_PIX_FMT_FLAG_BAYER | AV_PIX_FMT_FLAG_FLOAT;
    if (!desc || (desc->flags & kOther) != 0 || desc->nb_components == 0 || desc->comp[0].plane != 0)
        return std::nullopt;
    const AVComponentDescriptor& luma = desc->comp[0];
    if (luma.step == 1 && luma.depth == 8 && luma.offset == 0)
        return LumaSource{PixelLayout::Planar, 0};
    if (luma.step != 2 || luma.depth < 8)
        return std::nullopt;
    constexpr bool kIsLittle = std::endian::native == std::endian::little;
    if (luma.depth == 8) // the other byte of the pair is chroma or alpha
        return LumaSource{PixelLayout::Luma16, (luma.offset == 0) == kIsLittle ? 0 : 8};
    if (((desc->flags & AV_PIX_FMT_FLAG_BE) == 0) != kIsLittle)
        return std::nullopt;
    return LumaSource{PixelLayout::Luma16, luma.shift + luma.depth - 8};
}

int FullSide(int side, int halvings, int announced) {
    return AV_CEIL_RSHIFT(announced, halvings) == side ? announced : side << halvings;
}

int CropWidth(int width) {
    return width >= kWidthStep ? width - width % kWidthStep : std::max(2, width & ~1);
}

BytesOwner OwnerOf(AVFrame& decoded) {
    BytesOwner owner(OwnFfmpeg(av_frame_alloc()).release(), [](void* held) {
        auto* frame = static_cast<AVFrame*>(held);
        av_frame_free(&frame);
    });
    av_frame_move_ref(static_cast<AVFrame*>(owner.get()), &decoded);
    return owner;
}

} // namespace

LumaLayout::LumaLayout(const AVFrame& first, int halvings, PictureSize announced)
    : m_halvings(halvings),
      m_first{first.width, first.height},
      m_width(CropWidth(FullSide(first.width, halvings, announced.width))),
      m_height(FullSide(first.height, halvings, announced.height)) {}

LumaLayout::~LumaLayout() {
    sws_freeContext(m_converter);
}

bool LumaLayout::Hold(AVFrame& decoded, Picture& picture) {
    const auto source = FindLuma(decoded.format);
    if (!source || decoded.width != m_first.width || decoded.height != m_first.height ||
        decoded.width < m_width >> m_halvings)
        return HoldConverted(decoded, picture);
    const PixelRows rows{source->layout, decoded.data[0], decoded.linesize[0], decoded.width,
                         decoded.height, source->shift,   m_halvings};
    picture.HoldRows(rows, OwnerOf(decoded));
    return true;
}

// As YUY2, of which only the luma is meant.
bool LumaLayout::HoldConverted(const AVFrame& decoded, Picture& picture) {
    const int width = m_halvings == 0 ? m_width : m_first.width;
    // Pictures of the first one's size are cropped, others scaled to what the cropping left.
    const int sourceWidth = decoded.width == m_first.width ? std::min(decoded.width, width) : decoded.width;
    m_converter = sws_getCachedContext(
        m_converter, sourceWidth, decoded.height, static_cast<AVPixelFormat>(decoded.format), width,
        m_first.height, AV_PIX_FMT_YUYV422, SWS_BILINEAR | SWS_ACCURATE_RND, nullptr, nullptr, nullptr);
    if (!m_converter)
        return false;
    const std::ptrdiff_t stride = std::ptrdiff_t{width} * kYuy2Pitch;
    std::uint8_t* const yuy2 =
        picture.OwnBuffer(static_cast<std::size_t>(stride * m_first.height) + kBufferSlack);
    std::uint8_t* const planes[] = {yuy2, nullptr, nullptr, nullptr};
    const int strides[] = {static_cast<int>(stride), 0, 0, 0};
    if (sws_scale(m_converter, decoded.data, decoded.linesize, 0, decoded.height, planes, strides) !=
        m_first.height)
        return false;
    picture.HoldRows({PixelLayout::Yuy2, yuy2, stride, width, m_first.height, 0, m_halvings},
                     {nullptr, [](void*) {}});
    return true;
}

} // namespace scenedetect
