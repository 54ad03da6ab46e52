// What DV frames and their packs say, as text.
#pragma once

#include "reading/dv/DvPacks.h"

#include <string>

namespace scenedetect {

[[nodiscard]] std::string TextOf(const DvTimecode& timecode); ///< HH:MM:SS:FF, drop-frame HH:MM:SS;FF
[[nodiscard]] std::string TextOf(const std::chrono::year_month_day& date); ///< YYYY-MM-DD
[[nodiscard]] std::string TextOf(std::chrono::seconds time);               ///< of the day: HH:MM:SS
[[nodiscard]] std::string TextOf(DvAspect aspect);                         ///< "16:9", "16:9 letterbox"
[[nodiscard]] std::string TextOf(const DvAudioFormat& format);             ///< "48000 Hz 16 bits 2 channels"
[[nodiscard]] std::string TextOf(DvSystem system);                         ///< "625"

/// What a frame says, each as the text above; empty where it says nothing.
struct TapeTexts {
    std::string date;
    std::string time;
    std::string timecode;
    std::string aspect;
    std::string audio;
};
[[nodiscard]] TapeTexts TextsOf(const DvPacks& packs);

} // namespace scenedetect
