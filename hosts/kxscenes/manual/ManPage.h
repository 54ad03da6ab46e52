// The manual page: its hand-written template, and in it the options as they stand in the option table.
#pragma once

#include <CLI/CLI.hpp>

#include <string>

namespace scenedetect {

/// `page` in roff (man macros) with its line "@OPTIONS@" replaced by the options of `app`, and "@VERSION@" by
/// `version`. HostError when there is no such line.
[[nodiscard]] std::string FillManPage(std::string page, const CLI::App& app, const std::string& version);

} // namespace scenedetect
