// Reads the pictures of a video file one after another, in the form in which the filter takes them.
#pragma once

#include "reading/readers/MediaInfo.h"
#include "reading/readers/Picture.h"
#include "reading/timing/TimeScale.h"

#include <atomic>
#include <cstdint>
#include <functional>
#include <string>

namespace scenedetect {

/// One thread at a time, unless noted.
class PictureReader {
  public:
    virtual ~PictureReader() = default;

    /// The format of the first picture.
    [[nodiscard]] virtual const PictureFormat& Format() const = 0;
    /// What the times of the pictures' places mean.
    [[nodiscard]] virtual TimeScale Scale() const = 0;

    /// What else is known of the file, once it is open.
    [[nodiscard]] virtual MediaInfo Info() const { return {}; }
    /// How they are read, as a part of a sentence for people: "raw DV stream".
    [[nodiscard]] virtual std::string Description() const = 0;
    /// What is left out to be fast, where that was wanted and is possible; else empty.
    [[nodiscard]] virtual std::string Shortcut() const { return ""; }

    /// Fills `picture` with the next one. Damaged ones are left out with a warning. False at the end, where
    /// the file breaks off (with a warning), or once the run was stopped. HostError when reading fails.
    [[nodiscard]] virtual bool Next(Picture& picture) = 0;

    /// Passes over pictures from the next one on that are not wanted, by their places, where that takes less
    /// than reading them: returns how many. Once one is wanted, all that follow are.
    using IsWanted = std::function<bool(const FilePlace& place)>;
    [[nodiscard]] virtual std::int64_t PassOver(const IsWanted& /*isWanted*/) { return 0; }

    /// Once Next has returned false: whether the file ends early, in the middle of a frame or before the end
    /// that it announces.
    [[nodiscard]] bool HasBrokenOff() const { return m_hasBrokenOff; }

    /// The part of the file that was read so far, 0 to 1; negative when its size is unknown. Any thread.
    [[nodiscard]] double Fraction() const { return m_fraction.load(std::memory_order_relaxed); }

  protected:
    void SetBrokenOff() { m_hasBrokenOff = true; }
    void SetFraction(double fraction) { m_fraction.store(fraction, std::memory_order_relaxed); }

  private:
    std::atomic<double> m_fraction = -1;
    bool m_hasBrokenOff = false;
};

} // namespace scenedetect
