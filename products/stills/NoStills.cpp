// In place of this room's sources where FFmpeg's libraries are not.
#include "products/stills/FrameFetcher.h"
#include "products/stills/StillPicture.h"
#include "reading/base/HostError.h"

namespace scenedetect {
std::unique_ptr<FrameFetcher> FrameFetcher::Open(const std::string& /*path*/, bool /*isRawDv*/) {
    return nullptr;
}

std::vector<std::uint8_t> EncodeStill(const AVFrame& /*frame*/, const StillShape& /*shape*/,
                                      StillFormat /*format*/) {
    throw HostError("this build has no decoders and so makes no pictures");
}

} // namespace scenedetect
