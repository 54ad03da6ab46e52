// The look of --help: options under their headings, and nothing wider than 100 columns.
#pragma once

#include <CLI/CLI.hpp>

#include <string>

namespace scenedetect {

class HelpFormatter final : public CLI::Formatter {
  public:
    HelpFormatter() { label("Positionals", "Input"); }
    std::string make_help(const CLI::App* app, std::string name, CLI::AppFormatMode mode) const override;
    std::string make_option(const CLI::Option* option, bool isPositional) const override;
    /// The value alone: all else that matters stands in the description.
    std::string make_option_opts(const CLI::Option* option) const override;
};

} // namespace scenedetect
