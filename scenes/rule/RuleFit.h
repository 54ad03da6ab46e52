// The parameters that give a person's scenes best, found by trying.
#pragma once

#include "scenes/rule/DecideRows.h"

#include <cstdint>
#include <span>

namespace scenedetect {

/// What may be turned; the rest stays as it is.
struct FitChoice {
    bool cutThreshold = true;
    bool darkLevel = true;
    bool minVotes = true;
    bool flashes = true; ///< effects only where the table has distances
    bool fades = true;
    bool dissolves = true;
};

/// The first row is no cut, and counts for nothing.
struct RuleFit {
    RuleSettings settings;
    std::int64_t kept = 0;   ///< cuts that are wanted, and found
    std::int64_t missed = 0; ///< wanted, and not found
    std::int64_t added = 0;  ///< found, and not wanted

    [[nodiscard]] std::int64_t Errors() const { return missed + added; }
};

/// The settings with the fewest errors, of those the ones nearest to `own`. `wanted`: rows, ascending. All
/// cut thresholds are tried with all votes, and all dark levels with the best of these, in turns as long as
/// that helps. Throws std::bad_alloc at the most.
[[nodiscard]] RuleFit FitRule(const FigureTable& table, std::span<const std::int32_t> wanted,
                              const RuleSettings& own, const FitChoice& choice);

} // namespace scenedetect
