// Raw DV into a container: pictures as they are, and the audio that lies in the frames as streams of its own.
#pragma once

#include "products/files/OutputFile.h"
#include "products/muxing/Container.h"
#include "products/muxing/EncodeChoice.h"
#include "reading/base/FilePart.h"

#include <cstdint>
#include <string>

namespace scenedetect {

struct RemuxedDv {
    std::int64_t frames = 0;
    std::int64_t bytes = 0; ///< of the container's file
};

/// The part of `raw` is whole frames of one line system and one audio format. Commits nothing. HostError when
/// the container refuses DV, or reading or writing fails.
RemuxedDv RemuxDv(const std::string& raw, const FilePart& part, const Container& container,
                  OutputFile& target);
/// The same with the pictures encoded anew.
RemuxedDv EncodeDv(const std::string& raw, const FilePart& part, const Container& container,
                   const EncodeChoice& choice, OutputFile& target);

/// HostError where that could only fail: the encoder can't be opened, the container takes no such streams.
void RequireDvEncodable(const std::string& path, const EncodeChoice& choice, const Container& container,
                        bool hasAudio);

} // namespace scenedetect
