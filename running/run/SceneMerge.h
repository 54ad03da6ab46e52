// Scenes that several methods and rules find side by side, put into one order.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace scenedetect {

/// Where two methods find the same position, that is one scene. One thread.
class SceneMerge {
  public:
    /// `isAnyOrder`: positions may be added in any order, also those of one method.
    explicit SceneMerge(std::vector<std::string> methods, bool isAnyOrder = false)
        : m_methods(std::move(methods)), m_mustWait(isAnyOrder || m_methods.size() > 1) {}

    /// A scene at the position that the `filter`-th filter has found; each filter's positions ascend.
    void Add(std::size_t filter, std::int64_t position);
    /// Likewise by the method's word, which is one of those given.
    void Add(const std::string& method, std::int64_t position);
    /// Hands over, in order, the scenes before `end`, to which no filter adds any more; with a single filter
    /// all there are.
    void Take(std::int64_t end,
              const std::function<void(std::int64_t position, const std::string& method)>& take);

  private:
    struct Pending {
        std::int64_t position;
        std::vector<bool> foundBy;
    };

    [[nodiscard]] std::string MethodText(const Pending& scene) const;

    const std::vector<std::string> m_methods;
    const bool m_mustWait;
    std::vector<Pending> m_pending; // ascending
};

} // namespace scenedetect
