// Goes on with a later picture of a stream: those before it are counted by their packets, not decoded.
#pragma once

#include "reading/media/DecodedStream.h"
#include "reading/media/FrameClock.h"
#include "reading/readers/PictureReader.h"

#include <cstdint>
#include <memory>
#include <optional>

namespace scenedetect {

struct SkippedStream {
    std::unique_ptr<DecodedStream> stream;
    FfmpegPtr<AVFrame> picture; ///< the first that is wanted; null when there is none
    FrameClock clock;           ///< as after the last picture that is not
    std::int64_t count = 0;     ///< of these
};

/// `input` is the file at its beginning, `clock` has read the stamp of a picture, `stamp`: pictures after it
/// are passed over until one is wanted. Nothing when that saves nothing, or when it is not certain what
/// decoding all of them would give: then decoding has to. `damaged` is for the stream that it makes.
[[nodiscard]] std::optional<SkippedStream> SkipAhead(std::unique_ptr<MediaInput> input,
                                                     const FrameClock& clock, std::int64_t stamp,
                                                     const PictureReader::IsWanted& isWanted,
                                                     const Decoding& decoding,
                                                     const VideoDecoder::Damaged& damaged);

} // namespace scenedetect
