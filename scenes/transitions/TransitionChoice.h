// What a host wants made of flashes, fades and dissolves.
#pragma once

#include <array>

namespace scenedetect {

/// Where in a fade through black or white its scene begins: with the first frame that is black (white), in
/// the middle of these, or with the first one after them.
enum class FadePlace { Off, Start, Middle, End };

/// The words that users have for them.
inline constexpr std::array<const char*, 4> kFadeWords = {"off", "start", "middle", "end"};

struct TransitionChoice {
    bool dropsFlashes = false; ///< cuts at flashes are no scenes
    FadePlace fades = FadePlace::Off;
    bool findsDissolves = false;

    [[nodiscard]] bool FindsFades() const { return fades != FadePlace::Off; }
    /// Else it takes the distances of each frame.
    [[nodiscard]] bool IsEmpty() const { return *this == TransitionChoice{}; }
    friend bool operator==(const TransitionChoice&, const TransitionChoice&) = default;
};

} // namespace scenedetect
