// The run-length table from samples to places in the file; all that the host prints comes from it.
#pragma once

#include "reading/timing/TimeScale.h"

#include <cstddef>
#include <cstdint>
#include <mutex>
#include <optional>
#include <vector>

namespace scenedetect {

/// For pictures without a stamp. Far from all others, and no sum over a few of them runs over.
inline constexpr std::int64_t kNoStamp = -(std::int64_t{1} << 60);

/// Where a sample's picture lies in the file.
struct FilePlace {
    std::int64_t frame = 0;      ///< number in the file, from 0; frames that are missing there count
    std::int64_t time = 0;       ///< since the first frame, in units of the file's time scale
    std::int64_t byteOffset = 0; ///< of its compressed data; -1 when the container does not tell
    std::int64_t stamp =
        kNoStamp; ///< the container's own time stamp, by which the picture can be found again

    friend bool operator==(const FilePlace&, const FilePlace&) = default;
};

/// Where the picture after the last one would be.
[[nodiscard]] FilePlace PlaceAfter(const FilePlace& last, const TimeScale& scale);

/// One thread appends while others look up. Samples whose places grow evenly cost nothing; of irregular ones
/// only those are kept that were not given up by ForgetBefore.
class SampleTable {
  public:
    /// Notes the place of the next sample, counted from 0.
    void Append(const FilePlace& place);
    /// Nothing for a sample that is not there (yet) or was forgotten.
    [[nodiscard]] std::optional<FilePlace> Find(std::int64_t sample) const;
    /// Gives up the places of samples before this one, as far as that saves anything.
    void ForgetBefore(std::int64_t sample);

    [[nodiscard]] std::int64_t SampleCount() const;
    [[nodiscard]] std::size_t RunCount() const;

  private:
    struct Run {
        std::int64_t firstSample;
        std::int64_t count;
        FilePlace first;
        FilePlace step; // from sample to sample; settled by the run's second

        [[nodiscard]] FilePlace At(std::int64_t index) const;
        [[nodiscard]] std::int64_t End() const { return firstSample + count; }
    };

    mutable std::mutex m_mutex;
    std::vector<Run> m_runs; // in order; those before m_firstLive are given up
    std::size_t m_firstLive = 0;
    std::int64_t m_sampleCount = 0;
};

} // namespace scenedetect
