// The command line of kxscenes-graph.
#pragma once

#include "hosts/shared/CommonOptions.h"

#include <string>

namespace scenedetect {

/// Who reads the file.
enum class SourceKind {
    Automatic, ///< the system where it can deliver the pictures as they are, else the host
    System,    ///< the system's file source and AVI splitter
    Own,       ///< the host's source filter
};

/// What this host alone is asked.
struct GraphOptions {
    std::string modulePath; ///< empty: the registered module
    SourceKind source = SourceKind::Automatic;
};

/// Fills `own` beside the options of all hosts.
[[nodiscard]] CommandLine ParseCommandLine(int argc, const char* const* argv, GraphOptions& own);

} // namespace scenedetect
