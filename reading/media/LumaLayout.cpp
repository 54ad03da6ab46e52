#include "reading/media/LumaLayout.h"

#include "platform/CpuFeatures.h"
#include "reading/media/kernels/LumaRows.h"

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
constexpr std::size_t kBytesPerPixel = 2;

// How the luma of a format lies in plane 0.
struct LumaSource {
    LumaPixels pixels;
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
        return LumaSource{LumaPixels::Bytes, 0};
    if (luma.step != 2 || luma.depth < 8)
        return std::nullopt;
    constexpr bool kIsLittle = std::endian::native == std::endian::little;
    if (luma.depth == 8) // the other byte of the pair is chroma or alpha
        return LumaSource{LumaPixels::Words, (luma.offset == 0) == kIsLittle ? 0 : 8};
    if (((desc->flags & AV_PIX_FMT_FLAG_BE) == 0) != kIsLittle)
        return std::nullopt;
    return LumaSource{LumaPixels::Words, luma.shift + luma.depth - 8};
}

} // namespace

LumaLayout::LumaLayout(const AVFrame& first)
    : m_sourceWidth(first.width),
      m_width(first.width >= kWidthStep ? first.width - first.width % kWidthStep
                                        : std::max(2, first.width & ~1)),
      m_height(first.height) {}

LumaLayout::~LumaLayout() {
    sws_freeContext(m_converter);
}

std::size_t LumaLayout::Bytes() const {
    return static_cast<std::size_t>(m_width) * static_cast<std::size_t>(m_height) * kBytesPerPixel;
}

bool LumaLayout::LayOut(const AVFrame& picture, std::uint8_t* yuy2) {
    const auto source = FindLuma(picture.format);
    if (!source || picture.width != m_sourceWidth || picture.height != m_height || picture.width < m_width)
        return Convert(picture, yuy2);
    const LumaRow convert = SelectLumaRow(source->pixels, CpuFeatures());
    const auto width = static_cast<std::size_t>(m_width);
    for (int y = 0; y < m_height; ++y) {
        const std::uint8_t* row = picture.data[0] + static_cast<std::ptrdiff_t>(y) * picture.linesize[0];
        convert(row, source->shift, yuy2, width);
        yuy2 += width * kBytesPerPixel;
    }
    return true;
}

bool LumaLayout::Convert(const AVFrame& picture, std::uint8_t* yuy2) {
    // Pictures of the first one's size are cropped, others scaled to what the cropping left.
    const int sourceWidth = picture.width == m_sourceWidth ? std::min(picture.width, m_width) : picture.width;
    m_converter = sws_getCachedContext(
        m_converter, sourceWidth, picture.height, static_cast<AVPixelFormat>(picture.format), m_width,
        m_height, AV_PIX_FMT_YUYV422, SWS_BILINEAR | SWS_ACCURATE_RND, nullptr, nullptr, nullptr);
    if (!m_converter)
        return false;
    std::uint8_t* const planes[] = {yuy2, nullptr, nullptr, nullptr};
    const int strides[] = {m_width * static_cast<int>(kBytesPerPixel), 0, 0, 0};
    return sws_scale(m_converter, picture.data, picture.linesize, 0, picture.height, planes, strides) ==
           m_height;
}

} // namespace scenedetect
