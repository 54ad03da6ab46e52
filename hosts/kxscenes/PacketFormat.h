// Which packets go to the filter as they are, and the formats of these.
#pragma once

#include "hosts/kxscenes/DvFrame.h"
#include "hosts/kxscenes/Picture.h"

extern "C" {
#include <libavcodec/codec_par.h>
#include <libavutil/rational.h>
}

#include <optional>

namespace scenedetect {

/// biCompression of DV frames of 25 Mbit/s.
inline constexpr DWORD kDvFourcc = MAKEFOURCC('d', 'v', 's', 'd');

[[nodiscard]] AVRational DvRate(DvSystem system);
/// "dvsd", 720 x 576 or 720 x 480.
[[nodiscard]] PictureFormat DvPictureFormat(DvSystem system);

/// The format of the uncompressed pictures of an AVI stream that the filter reads: YUY2, UYVY, I420, YV12 and
/// RGB24. Nothing for any other.
[[nodiscard]] std::optional<PictureFormat> UncompressedFormat(const AVCodecParameters& stream,
                                                              AVRational rate);

} // namespace scenedetect
