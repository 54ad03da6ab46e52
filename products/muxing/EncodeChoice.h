// The encoder that clips are made anew with, as the command line names it.
#pragma once

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

} // namespace scenedetect
