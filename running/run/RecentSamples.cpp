#include "running/run/RecentSamples.h"

#include "running/run/RunListener.h"

#include <algorithm>
#include <utility>

namespace scenedetect {

DvPacks PacksOf(const Picture& picture) {
    const DvFrameInfo* info = picture.format.fourcc == kDvFourcc ? picture.Dv() : nullptr;
    return info ? info->packs : DvPacks();
}

void RecentSamples::Add(ComRef<PictureSample> sample) {
    if (std::ssize(m_samples) > RunListener::kLookBack)
        if (Recent& old = m_samples[m_samples.size() - 1 - RunListener::kLookBack]; old.sample) {
            old.packs = PacksOf(old.sample->picture);
            old.sample.reset();
        }
    m_samples.push_back({sample->picture.place, std::move(sample)});
    ++m_end;
}

DvPacks RecentSamples::PacksAt(std::int64_t sample) const {
    const Recent& recent = At(sample);
    return recent.sample ? PacksOf(recent.sample->picture) : recent.packs;
}

void RecentSamples::ForgetBefore(std::int64_t sample) {
    for (; m_first < std::min(sample, m_end); ++m_first)
        m_samples.pop_front();
}

} // namespace scenedetect
