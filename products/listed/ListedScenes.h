// Which pictures of a file begin and end the scenes of a list.
#pragma once

#include "products/listed/SceneList.h"
#include "reading/readers/MediaInfo.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

namespace scenedetect {

/// Asked for place after place, in order. One thread.
class ListedScenes {
  public:
    /// `list` must outlive the object; `first` is the file's own timecode. HostError, with the list's path
    /// and the place in it, for scenes out of order, that overlap or end before they begin, and for another
    /// rate.
    ListedScenes(const SceneList& list, const TimeScale& scale, const std::optional<SourceTimecode>& first);

    /// What the picture at a place is to the list.
    struct Turn {
        const ListedScene* begins = nullptr; ///< the scene that it begins, if any
        bool ends = false;                   ///< the scene before it has ended
    };
    /// HostError for a scene that no picture lies in, but for those before the first picture.
    [[nodiscard]] Turn At(const FilePlace& place);
    /// `end` is the place after the file's last picture. HostError for a list that goes beyond it, and for
    /// one whose frames and times do not belong together here.
    void Finish(const FilePlace& end) const;
    /// The pictures so far that lie in no scene.
    [[nodiscard]] std::int64_t LeftOut() const { return m_leftOut; }

  private:
    struct Span {
        const ListedScene* scene;
        TimePosition start;
        std::optional<TimePosition> end;
    };

    [[nodiscard]] TimePosition PositionOf(const ListedPoint& point, const ListedScene& scene) const;
    [[nodiscard]] std::int64_t SourceFrame(const TimecodePoint& point, const std::string& text) const;
    void RequireOrder() const;
    void Compare(const ListedPoint& point, const FilePlace& place);
    [[noreturn]] void Fail(const ListedScene& scene, const std::string& what) const;

    const SceneList& m_list;
    const TimeScale m_scale;
    const std::optional<SourceTimecode> m_first;
    std::vector<Span> m_spans;
    std::size_t m_next = 0; // the span that is open, or is to be
    bool m_isOpen = false;
    bool m_hasBegun = false;
    std::int64_t m_leftOut = 0;
    // Frames whose time the list has right, and those that it has not.
    std::int64_t m_right = 0;
    std::int64_t m_wrong = 0;
};

} // namespace scenedetect
