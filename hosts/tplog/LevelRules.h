// Up to which level the messages of each category are wanted.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace scenedetect::tplog {

/// Needs no destructor, so that it can be asked until the very end of a process. Unchanging once read.
class LevelRules {
  public:
    /// Reads a list such as "702:31,700:1,5": a level for a category, or for all the others. False when an
    /// item makes no sense or finds no room; the others count all the same.
    [[nodiscard]] bool Read(std::string_view list);

    [[nodiscard]] bool Wants(std::uint32_t category, std::uint32_t level) const;

  private:
    struct Rule {
        std::uint32_t category;
        std::uint32_t highestLevel;
    };
    [[nodiscard]] bool ReadItem(std::string_view item);

    std::array<Rule, 16> m_rules{};
    std::size_t m_count = 0;
    std::uint32_t m_highestLevelOfOthers = 5;
};

} // namespace scenedetect::tplog
