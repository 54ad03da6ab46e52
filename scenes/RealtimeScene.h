// One detected scene: its position and, where pictures are kept, a copy of its frame.
#pragma once

#include "engine/Dib.h"

#include <cstdint>

namespace scenedetect {

struct RealtimeScene {
    Dib m_dib;                ///< a deep copy of the frame, or empty
    std::uint32_t m_nPos = 0; ///< frame number within the run
};

} // namespace scenedetect
