// The scenes that a DV tape tells itself.
#pragma once

#include "reading/dv/TapeJudge.h"
#include "reading/readers/Picture.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <utility>
#include <vector>

namespace scenedetect {

/// Each is told a picture after its first. One thread.
class TapeScenes {
  public:
    /// `found` gets the place of a cut among `cuts`, and the sample that it begins; in their order.
    TapeScenes(std::vector<TapeCut> cuts, std::function<void(std::size_t cut, std::int64_t sample)> found)
        : m_cuts(std::move(cuts)), m_found(std::move(found)) {}

    /// The picture of a sample; the first is a scene of every kind.
    void Note(const Picture& picture, std::int64_t sample);
    void Finish();

  private:
    void Tell(const std::optional<TapeVerdict>& verdict);

    const std::vector<TapeCut> m_cuts;
    const std::function<void(std::size_t cut, std::int64_t sample)> m_found;
    TapeJudge m_judge;
    std::int64_t m_sample = 0; // of the frame that was noted last
};

} // namespace scenedetect
