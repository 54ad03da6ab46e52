// From the time stamps of a container to frame numbers and times of the file.
#pragma once

#include "reading/ffmpeg/Rational.h"
#include "reading/timing/SampleTable.h"
#include "reading/timing/TimeScale.h"

#include <cstdint>
#include <optional>

namespace scenedetect {

/// The stamps of pictures in presentation order; where one is missing, or too far off to be true, the one
/// that was expected. So a second reading finds a picture by the stamp that the first has noted.
class StampFiller {
  public:
    StampFiller(AVRational timeBase, AVRational rate);

    /// The stamp of the next picture; kNoStamp while nothing tells where the pictures are.
    [[nodiscard]] std::int64_t Next(std::int64_t stamp);
    /// To be called when the next picture does not follow the last.
    void Forget() { m_expected = kNoStamp; }

  private:
    std::int64_t m_step;
    std::int64_t m_expected = 0; // a stream without stamps is counted from 0
};

/// Numbers the pictures of one stream in presentation order.
///
/// At a constant rate the number comes from the time stamp, so that frames that are missing leave a gap, and
/// the time from the number. At a variable rate the number is the picture's ordinal and the time its stamp,
/// counted from the first picture. A rate that was declared constant is variable from the first stamp on that
/// lies between two frames. Numbers and times never go back, whatever the stamps do.
class FrameClock {
  public:
    struct Setup {
        AVRational timeBase{1, 25};
        AVRational rate{25, 1};
        bool constantRate = true;
        bool stampsMayJump = false;         ///< where streams were joined
        std::optional<std::int64_t> origin; ///< stamp of frame 0; else the first picture is frame 0
    };

    explicit FrameClock(const Setup& setup);

    [[nodiscard]] TimeScale Scale() const { return {RatioOf(m_timeBase), RatioOf(m_setup.rate)}; }
    /// Reads the next picture's stamp; AV_NOPTS_VALUE for a picture without one. The times are in the time
    /// base of Scale().
    [[nodiscard]] FilePlace Next(std::int64_t stamp, std::int64_t byteOffset);

  private:
    [[nodiscard]] std::optional<std::int64_t> TimeOf(std::int64_t stamp);

    Setup m_setup;
    AVRational m_timeBase;
    std::int64_t m_frameTime; // in ticks of m_timeBase
    StampFiller m_stamps;
    bool m_isConstant;
    std::optional<std::int64_t> m_origin;
    std::int64_t m_nextFrame = 0;
    std::int64_t m_nextTime = 0; // expected
    std::int64_t m_lastTime = -1;
};

} // namespace scenedetect
