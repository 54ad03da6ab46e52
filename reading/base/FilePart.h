// Some of a file's bytes.
#pragma once

#include <cstdint>

namespace scenedetect {

struct FilePart {
    std::int64_t begin = 0;
    std::int64_t end = 0; ///< exclusive
};

} // namespace scenedetect
