// The last samples of a run, as far as a scene may yet begin with one of them.
#pragma once

#include "baseclasses/ComRef.h"
#include "reading/dv/DvPacks.h"
#include "running/detection/PictureAllocator.h"

#include <cstdint>
#include <deque>

namespace scenedetect {

/// What the picture's bytes say, if it is DV.
[[nodiscard]] DvPacks PacksOf(const Picture& picture);

/// Holds the samples themselves for `RunListener::kLookBack` pictures, and then, for scenes that are known
/// later, where they lie and what they say. One thread.
class RecentSamples {
  public:
    void Add(ComRef<PictureSample> sample);
    /// The sample that was added last.
    [[nodiscard]] PictureSample& Last() const { return *m_samples.back().sample; }
    [[nodiscard]] bool Has(std::int64_t sample) const { return sample >= m_first && sample < m_end; }
    [[nodiscard]] FilePlace PlaceOf(std::int64_t sample) const { return At(sample).place; }
    [[nodiscard]] DvPacks PacksAt(std::int64_t sample) const;
    /// Those that no scene begins with any more.
    void ForgetBefore(std::int64_t sample);

  private:
    struct Recent {
        FilePlace place;
        ComRef<PictureSample> sample; ///< null once it is given back
        DvPacks packs{};              ///< from then on
    };

    [[nodiscard]] const Recent& At(std::int64_t sample) const {
        return m_samples[static_cast<std::size_t>(sample - m_first)];
    }

    std::deque<Recent> m_samples;
    std::int64_t m_first = 0;
    std::int64_t m_end = 0;
};

} // namespace scenedetect
