// A picture size that each run's first frame reduces.
#pragma once

#include <cstdint>

namespace scenedetect {

/// Deliberate: halved on first frames although nothing gives it a value; state for a later use.
struct ReducedSize {
    std::int32_t m_nReducedWidth = 0;
    std::int32_t m_nReducedHeight = 0;

    /// Until the width is 180 or less.
    constexpr void Halve() {
        constexpr std::int32_t kWidthLimit = 180;
        while (m_nReducedWidth > kWidthLimit) {
            m_nReducedWidth /= 2;
            m_nReducedHeight /= 2;
        }
    }

    friend constexpr bool operator==(const ReducedSize&, const ReducedSize&) = default;
};

} // namespace scenedetect
