// How far a run is.
#pragma once

#include <atomic>
#include <cstdint>

namespace scenedetect {

/// Written by the run's thread; any thread may look.
struct RunProgress {
    std::atomic<std::int64_t> frames = 0;
    std::atomic<double> fraction = -1; ///< of the file, 0 to 1; negative when unknown

    /// What is made of the file when all its frames have passed ("clips"), and how many of them are there.
    std::atomic<const char*> products = nullptr;
    std::atomic<std::int64_t> made = 0;
    std::atomic<std::int64_t> wanted = 0;
};

} // namespace scenedetect
