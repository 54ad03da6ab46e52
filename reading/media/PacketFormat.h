// Which packets go to the filter as they are.
#pragma once

#include "reading/readers/PictureFormat.h"

extern "C" {
#include <libavcodec/codec_par.h>
}

#include <optional>

namespace scenedetect {

/// The format of the uncompressed pictures of an AVI stream that the filter reads: YUY2, UYVY, I420, YV12 and
/// RGB24. Nothing for any other.
[[nodiscard]] std::optional<PictureFormat> UncompressedFormat(const AVCodecParameters& stream, Ratio rate);

} // namespace scenedetect
