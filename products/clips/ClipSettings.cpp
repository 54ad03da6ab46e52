#include "products/clips/ClipSettings.h"

#include "reading/base/HostError.h"

#include <filesystem>
#include <system_error>

namespace scenedetect {

std::string FramesText(std::int64_t frames) {
    return std::to_string(frames) + (frames == 1 ? " frame" : " frames");
}

std::string ClaimClipPath(const ClipSettings& settings, const NameFields& names, std::string_view suffix,
                          OutputClaims& claims) {
    return claims.ClaimIn(settings.folder, settings.names.Expand(names, suffix));
}

} // namespace scenedetect
