#include "products/muxing/EncodeChoice.h"

namespace scenedetect {

EncodeChoice ParseEncodeChoice(const std::string& text) {
    const std::size_t colon = text.find(':');
    return {text.substr(0, colon), colon == std::string::npos ? "" : text.substr(colon + 1)};
}

} // namespace scenedetect
