// What --timecode reports: where the timecode of a DV stream starts.
#pragma once

#include "reading/readers/Picture.h"
#include "scenes/IKxSceneDetect.h"

#include <string>

namespace scenedetect {

/// The filter gives a frame number and does not tell 00:00:00:00 from no timecode, hence the look at the
/// first frame. Note runs on the streaming thread, before Text is asked for on another.
class StartTimecode {
  public:
    void Note(const Picture& first);
    /// One sentence, once the run is over.
    [[nodiscard]] std::string Text(IKxSceneDetect& scenes) const;

  private:
    enum class FirstFrame { NotDv, Without, BeyondReach, Usable };

    FirstFrame m_first = FirstFrame::NotDv;
    bool m_is525 = false;
    std::string m_onTape;
};

} // namespace scenedetect
