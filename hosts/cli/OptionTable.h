// A program's options as the command-line library holds them: what is parsed, shown as help, and documented.
#pragma once

#include "hosts/cli/CommonOptions.h"

#include <CLI/CLI.hpp>

#include <string>

namespace scenedetect {

/// The one place where the options stand. Parsing `app` fills what the program's options refer to. Texts that
/// are shown: a type name tells what completes a value, in lower-case words for choices ("start|end|N"), FILE
/// or DIR for names; options that a configuration file may set are `configurable`; a group is a heading.
struct OptionTable {
    /// `program` must outlive the table.
    explicit OptionTable(const HostProgram& program);
    OptionTable(const OptionTable&) = delete;
    OptionTable& operator=(const OptionTable&) = delete;

    CLI::App app;
};

/// The type name of an option that takes a value, without what checks of the value are called; else empty.
[[nodiscard]] std::string ValueName(const CLI::Option& option);

} // namespace scenedetect
