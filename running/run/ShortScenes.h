// Scenes shorter than the user wants to see, left out as soon as that is known.
#pragma once

#include "running/run/RunListener.h"

#include <cstdint>
#include <functional>
#include <optional>

namespace scenedetect {

/// A short scene becomes part of the one before it, so that each scene that stays begins with a picture of
/// its own and not with the flash or the lost bytes of a cut; the first, before which there is none, takes
/// what follows until it is long enough. Lengths count frames of the file. One thread.
class ShortScenes {
  public:
    /// `take` gets the scenes that stay, numbered, each once it is known to be long enough. Those of
    /// `shortest` frames or more stay; with 0 all do.
    ShortScenes(std::int64_t shortest, std::function<void(const FoundScene& scene)> take)
        : m_shortest(shortest), m_take(std::move(take)) {}

    /// The next scene, in order.
    void Add(const FoundScene& scene);
    /// No scene that is added from now on begins before this frame. At the end: the frame after the last.
    void Settle(std::int64_t frame);
    /// Of those that stay.
    [[nodiscard]] std::int64_t Count() const { return m_count; }
    /// Of those that do not; at the end.
    [[nodiscard]] std::int64_t LeftOut() const { return m_added - m_count; }

  private:
    void Take(FoundScene scene);

    const std::int64_t m_shortest;
    const std::function<void(const FoundScene& scene)> m_take;
    std::int64_t m_added = 0;
    std::int64_t m_count = 0;
    std::int64_t m_begin = 0; // frame of the last that stays
    std::optional<FoundScene> m_candidate;
};

} // namespace scenedetect
