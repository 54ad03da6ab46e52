// Where scenes lie in the time stamps of a file.
#pragma once

#include "products/cutting/CutPackets.h"
#include "products/muxing/PacketSource.h"
#include "reading/ffmpeg/Rational.h"

extern "C" {
#include <libavutil/mathematics.h>
}

#include <cstddef>
#include <cstdint>

namespace scenedetect {

/// In the time base of the video stream.
class SceneStamps {
  public:
    /// `origin` is the stamp of time 0. The others must outlive the object.
    SceneStamps(const PacketCut& cut, const PacketSource& source, std::int64_t origin)
        : m_cut(cut),
          m_timeBase(source.Video().time_base),
          m_origin(origin),
          m_tolerance(av_rescale_q(1, av_inv_q(source.Rate()), m_timeBase) / 4) {}

    /// By which stamps may be off their frame.
    [[nodiscard]] std::int64_t Tolerance() const { return m_tolerance; }
    [[nodiscard]] std::int64_t Of(std::int64_t time) const {
        return m_origin + av_rescale_q(time, RationalOf(m_cut.scale.unit), m_timeBase);
    }
    /// From here on pictures belong to the scene: times of the first pass are rounded to frames.
    [[nodiscard]] std::int64_t Begin(std::size_t scene) const {
        return Of(m_cut.scenes[scene].place.time) - m_tolerance;
    }
    /// INT64_MAX at the end of the file.
    [[nodiscard]] std::int64_t End(std::size_t scene) const {
        if (const auto& end = m_cut.scenes[scene].end)
            return Of(*end);
        if (scene + 1 < m_cut.scenes.size())
            return Of(m_cut.scenes[scene + 1].place.time);
        return m_cut.endsBefore ? Of(m_cut.end) : INT64_MAX;
    }
    /// The frame at this stamp, at a constant rate.
    [[nodiscard]] std::int64_t FrameAt(std::int64_t stamp) const {
        return av_rescale_q(stamp - m_origin, m_timeBase, RationalOf(m_cut.scale.rate.Inverse()));
    }

  private:
    const PacketCut& m_cut;
    const AVRational m_timeBase;
    const std::int64_t m_origin;
    const std::int64_t m_tolerance;
};

} // namespace scenedetect
