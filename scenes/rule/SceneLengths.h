// How long a scene has to be, and what becomes of a shorter one.
#pragma once

#include <array>
#include <cstdint>
#include <optional>

namespace scenedetect {

enum class ShortRule {
    Merge,     ///< becomes a part of the one before; the first takes what follows until it is long enough
    Drop,      ///< is left out: its frames belong to no scene
    MergeLast, ///< stays, but for the last one, which becomes a part of the one before
};

/// In the order of ShortRule.
inline constexpr std::array<const char*, 3> kShortRules = {"merge", "drop", "merge-last"};

/// Frame in the file, and its time in units of the file.
struct FrameAndTime {
    std::int64_t frame = 0;
    std::int64_t time = 0;

    friend bool operator==(const FrameAndTime&, const FrameAndTime&) = default;
};

/// So much after its first frame a scene may end.
struct LeastLength {
    std::int64_t count = 0;
    bool isTime = false; ///< units of time, not frames

    [[nodiscard]] bool IsReached(const FrameAndTime& begin, const FrameAndTime& place) const {
        return isTime ? place.time - begin.time >= count : place.frame - begin.frame >= count;
    }
};

/// Told of scene after scene, it says of each whether it stays. What becomes part of another scene becomes
/// part of the one before, so that each scene that stays begins with a picture of its own and not with the
/// flash or the lost bytes of a cut. One scene at most waits for its fate. One thread.
class LengthRule {
  public:
    enum class Fate {
        Waits,
        Stays,
        Merged,  ///< into the one before
        Dropped, ///< it belongs to no scene, up to the next
    };
    struct Fates {
        Fate waiting; ///< of the scene that waits; Waits where there is none or it goes on
        Fate added;
    };

    /// Without a least length all scenes stay.
    LengthRule(const std::optional<LeastLength>& least, ShortRule rule) : m_least(least), m_rule(rule) {}

    /// The next scene, in order. Of two at one place the first counts, where there is a least length. At most
    /// one of the two fates is Waits after the other has left it.
    [[nodiscard]] Fates Add(const FrameAndTime& place);
    /// No scene that is added from now on begins before this place.
    [[nodiscard]] Fate Settle(const FrameAndTime& place);
    /// The last scene ends here.
    [[nodiscard]] Fate Finish(const FrameAndTime& end);

  private:
    Fate Keep(const FrameAndTime& place);

    const std::optional<LeastLength> m_least;
    const ShortRule m_rule;
    std::optional<FrameAndTime> m_begin; // of the last that stays
    std::optional<FrameAndTime> m_waiting;
};

} // namespace scenedetect
