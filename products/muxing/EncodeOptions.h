// Encoders of FFmpeg's libraries, and the options that they are opened with.
#pragma once

#include "products/muxing/EncodeChoice.h"
#include "reading/ffmpeg/FfmpegPointers.h"

extern "C" {
#include <libavutil/dict.h>
}

#include <memory>
#include <string>

namespace scenedetect {

/// Null when there is none.
[[nodiscard]] const AVCodec* FindVideoEncoder(const std::string& name);

struct DictionaryDeleter {
    void operator()(AVDictionary* dictionary) const { av_dict_free(&dictionary); }
};
using Dictionary = std::unique_ptr<AVDictionary, DictionaryDeleter>;

/// The options, and those that we choose where they leave quality open: crf=18 for libx264;
/// libx265 is kept from printing. Null without any,
/// and where they can't be read.
[[nodiscard]] Dictionary EncodeOptions(const EncodeChoice& choice);

} // namespace scenedetect
