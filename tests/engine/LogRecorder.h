// The diagnostic log of this test program: kept in memory instead of handed to a library.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace scenedetect::testing_support {

/// Records every line while it lives, as "category/level text"; levels up to `highest` count as wanted.
struct LogRecorder {
    explicit LogRecorder(std::uint32_t highest = 0);
    ~LogRecorder();
    LogRecorder(const LogRecorder&) = delete;
    LogRecorder& operator=(const LogRecorder&) = delete;

    std::vector<std::wstring> lines;
    const std::uint32_t highestLevel;
};

} // namespace scenedetect::testing_support
