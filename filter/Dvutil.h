// Metadata of DV frames: timecode, recording time and display aspect.
#pragma once

#include <cstdint>
#include <span>

namespace scenedetect {

/// Reads one frame at a time and keeps nothing; any thread. `frame` is the whole frame's bytes: when it is
/// shorter than the sequences that its header announces, a reading fails as if it found nothing.
class Dvutil {
  public:
    /// The first timecode pack of the subcode area, as binary-coded decimals (frames in the lowest byte,
    /// hours in the highest) without the flag bits, and the flag beside the frames. Logged when there is
    /// none.
    [[nodiscard]] bool GetTimeCodeInBCD(std::span<const std::uint8_t> frame, std::uint32_t& word,
                                        bool& flag) const;
    /// The timecode. Values that are out of range (four hours and more are) are given all the same, with
    /// false.
    [[nodiscard]] bool GetTimeCode(std::span<const std::uint8_t> frame, int& hours, int& minutes,
                                   int& seconds, int& frames) const;
    /// The time of day of the recording, from the video auxiliary area; the frames are 0 where the tape has
    /// none. Not checked against any range.
    [[nodiscard]] bool GetRecordingTime(std::span<const std::uint8_t> frame, int& hours, int& minutes,
                                        int& seconds, int& frames) const;
    /// Width by height of the picture as it is to be shown: 4/3, 14/9 or 16/9. Looks at one sequence only.
    [[nodiscard]] bool GetDisplayAspect(std::span<const std::uint8_t> frame, double& ratio) const;
};

} // namespace scenedetect
