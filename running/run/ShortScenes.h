// Scenes shorter than the user wants to see: joined to others or left out as soon as that is known.
#pragma once

#include "running/run/RunListener.h"
#include "running/run/SceneLength.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <utility>

namespace scenedetect {

/// What becomes part of another scene becomes part of the one before, so that each scene that stays begins
/// with a picture of its own and not with the flash or the lost bytes of a cut. One thread.
class ShortScenes {
  public:
    /// Gets the scenes that stay, numbered, each once it is known that it does.
    using Take = std::function<void(const FoundScene& scene)>;
    /// Gets what belongs to no scene, until the next one begins; once the scene that began there is known to
    /// be too short.
    using Leave = std::function<void(std::int64_t sample, const FilePlace& place)>;

    /// HostError when a timecode does not go with the rate.
    ShortScenes(SceneLength length, const TimeScale& scale, Take take, Leave leave);

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
    void TakeScene(FoundScene scene);
    void Drop(const FoundScene& scene, const FilePlace& end);

    const SceneLength m_length;
    const TimeScale m_scale;
    const Take m_take;
    const Leave m_leave;
    std::int64_t m_added = 0;
    std::int64_t m_count = 0;
    std::int64_t m_droppedFrames = 0;
    bool m_isInScene = false;
    FilePlace m_begin;       // of the last that stays
    TimePosition m_longFrom; // and where it is long enough
    std::optional<FoundScene> m_candidate;
    TimePosition m_candidateLongFrom;
};

} // namespace scenedetect
