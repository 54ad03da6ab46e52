// The encoder that clips are made anew with, and its options, as the command line names them.
#pragma once

#include "reading/ffmpeg/FfmpegPointers.h"

extern "C" {
#include <libavutil/dict.h>
}

#include <memory>
#include <string>

namespace scenedetect {

struct EncodeChoice {
    std::string
        codec; ///< an encoder of FFmpeg's libraries, or a codec that has one; empty: nothing is encoded
    std::string options; ///< "crf=16:preset=medium"

    [[nodiscard]] bool IsWanted() const { return !codec.empty(); }
};

/// From "libx264:crf=16:preset=medium".
[[nodiscard]] EncodeChoice ParseEncodeChoice(const std::string& text);
/// What is wrong with it, in one line: the encoder is not there or has no such option or value; empty when
/// nothing is. What only opening the encoder tells stays open.
[[nodiscard]] std::string EncodeFault(const std::string& text);

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
