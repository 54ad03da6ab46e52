// What is to be done with each of the inputs.
#pragma once

#include "hosts/files/OutputClaims.h"
#include "hosts/kxscenes/Options.h"

#include <string>
#include <utility>
#include <vector>

namespace scenedetect {

struct FilterPlan {
    KxDetectionMethod method = KxMethodVideo;
    std::string xmlPath; ///< scene-list file; empty: none
};

/// The paths of the outputs of one input are settled; empty: not wanted. `options` and `own` must outlive the
/// plan.
struct RunPlan {
    RunPlan(const Options& theOptions, const KxOptions& theOwn, std::string theInput)
        : options(theOptions), own(theOwn), input(std::move(theInput)) {}

    const Options& options;
    const KxOptions& own;
    std::string input;
    bool isOneOfMany = false; ///< its messages begin with its name
    bool wantsFigures = false;
    std::vector<FilterPlan> filters; ///< one or more
    std::vector<Requests::List> lists;
    std::string reportPath;
    std::string tapeLogPath;
    std::string statsPath;

    /// Whether the standard output is one of the lists, so that scenes are not printed there.
    [[nodiscard]] bool WritesToStandardOutput() const;
};

/// One plan an input, folders being what is in them. HostError when two outputs would be the same file, when
/// one would overwrite an input or cannot be written, when a folder cannot be read.
[[nodiscard]] std::vector<RunPlan> MakePlans(const Options& options, const KxOptions& own,
                                             OutputClaims& claims);

} // namespace scenedetect
