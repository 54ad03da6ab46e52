#include "running/run/SceneMerge.h"

#include "reading/base/ListText.h"

#include <algorithm>

namespace scenedetect {

void SceneMerge::Add(std::size_t filter, std::int64_t position) {
    // After its equals, so that what one filter reports twice stays two.
    auto place =
        std::upper_bound(m_pending.begin(), m_pending.end(), position,
                         [](std::int64_t value, const Pending& each) { return value < each.position; });
    for (auto equal = place; equal != m_pending.begin() && (equal - 1)->position == position; --equal)
        if (!(equal - 1)->foundBy[filter]) {
            (equal - 1)->foundBy[filter] = true;
            return;
        }
    place = m_pending.insert(place, {position, std::vector<bool>(m_methods.size())});
    place->foundBy[filter] = true;
}

void SceneMerge::Add(const std::string& method, std::int64_t position) {
    Add(static_cast<std::size_t>(std::ranges::find(m_methods, method) - m_methods.begin()), position);
}

void SceneMerge::Take(std::int64_t end,
                      const std::function<void(std::int64_t position, const std::string& method)>& take) {
    std::size_t taken = 0;
    while (taken < m_pending.size() && (!m_mustWait || m_pending[taken].position < end)) {
        take(m_pending[taken].position, MethodText(m_pending[taken]));
        ++taken;
    }
    m_pending.erase(m_pending.begin(), m_pending.begin() + static_cast<std::ptrdiff_t>(taken));
}

std::string SceneMerge::MethodText(const Pending& scene) const {
    std::string text;
    for (std::size_t filter = 0; filter < m_methods.size(); ++filter)
        if (scene.foundBy[filter])
            AppendToList(text, "+", m_methods[filter]);
    return text;
}

} // namespace scenedetect
