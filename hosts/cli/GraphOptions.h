// The command line of kxscenes-graph.
#pragma once

#include "hosts/cli/CommonOptions.h"

#include <optional>
#include <string>
#include <vector>

namespace scenedetect {

/// Who reads the file.
enum class SourceKind {
    Automatic, ///< the system where it can deliver the pictures as they are, else the host
    System,    ///< the system's file source and AVI splitter
    Own,       ///< the host's source filter
};

/// What this host is asked, checked for sense.
struct GraphOptions {
    DetectionSettings detection;     ///< with one method
    std::string xmlPath;             ///< scene-list file; empty: none
    std::vector<std::string> inputs; ///< one
    std::string modulePath;          ///< empty: the registered module
    SourceKind source = SourceKind::Automatic;
};

/// Fills `options`; nothing when the program is to run.
[[nodiscard]] std::optional<EarlyEnd> ParseCommandLine(int argc, const char* const* argv,
                                                       GraphOptions& options);

} // namespace scenedetect
