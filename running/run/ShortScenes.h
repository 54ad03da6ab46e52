// Scenes shorter than the user wants to see: joined to others or left out as soon as that is known.
#pragma once

#include "running/run/RunListener.h"
#include "running/run/SceneLength.h"

#include <cstdint>
#include <functional>
#include <utility>

namespace scenedetect {

/// Scenes held back until LengthRule says what becomes of them. One thread.
class ShortScenes {
  public:
    /// Gets the scenes that stay, numbered, each once it is known that it does.
    using Take = std::function<void(const FoundScene& scene)>;
    /// Gets what belongs to no scene, until the next one begins; once the scene that began there is known to
    /// be too short.
    using Leave = std::function<void(std::int64_t sample, const FilePlace& place)>;

    /// HostError when a timecode does not go with the rate.
    ShortScenes(const SceneLength& length, const TimeScale& scale, Take take, Leave leave)
        : m_rule(length.LeastAt(scale), length.rule), m_take(std::move(take)), m_leave(std::move(leave)) {}

    /// The next scene, in order. Of two at one place the first counts, where there is a least length.
    void Add(const FoundScene& scene);
    /// No scene that is added from now on begins before this place.
    void Settle(const FilePlace& place);
    /// The last scene ends here.
    void Finish(const FilePlace& end);
    /// Of those that stay.
    [[nodiscard]] std::int64_t Count() const { return m_count; }
    /// Of those that do not; at the end.
    [[nodiscard]] std::int64_t LeftOut() const { return m_added - m_count; }
    /// Frames of the scenes that are left out.
    [[nodiscard]] std::int64_t DroppedFrames() const { return m_droppedFrames; }

  private:
    void Settle(LengthRule::Fate waiting, const FilePlace& end);
    void TakeScene(FoundScene scene);
    void Drop(const FoundScene& scene, const FilePlace& end);

    LengthRule m_rule;
    const Take m_take;
    const Leave m_leave;
    std::int64_t m_added = 0;
    std::int64_t m_count = 0;
    std::int64_t m_droppedFrames = 0;
    bool m_isInScene = false;
    FoundScene m_waiting; // while the rule has one wait
};

} // namespace scenedetect
