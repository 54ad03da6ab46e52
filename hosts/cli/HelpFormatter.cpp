#include "hosts/cli/HelpFormatter.h"

#include "hosts/cli/OptionTable.h"

#include <cstddef>
#include <sstream>

namespace scenedetect {
namespace {

constexpr std::size_t kColumns = 100;
constexpr std::size_t kDescriptionColumn = 32;

// Words of `text` from `column` on, in as many lines as they need; `line` has what is on the first one.
std::string Wrap(std::string line, const std::string& text, std::size_t column) {
    std::string lines;
    std::istringstream words(text);
    const auto begin = [&] { line.resize(column, ' '); };
    if (line.size() + 1 >= column) {
        lines = line + '\n';
        line.clear();
    }
    begin();
    for (std::string word; words >> word;) {
        if (line.size() > column && line.size() + 1 + word.size() > kColumns) {
            lines += line + '\n';
            line.clear();
            begin();
        }
        line += (line.size() > column ? " " : "") + word;
    }
    return lines + line + '\n';
}

} // namespace

std::string HelpFormatter::make_help(const CLI::App* app, std::string name, CLI::AppFormatMode mode) const {
    std::string help = CLI::Formatter::make_help(app, std::move(name), mode);
    for (std::size_t at = 0; (at = help.find("\n\n\n", at)) != std::string::npos;)
        help.erase(at, 1);
    return help;
}

std::string HelpFormatter::make_option(const CLI::Option* option, bool isPositional) const {
    const std::string value = isPositional ? "" : make_option_opts(option);
    return Wrap("  " + make_option_name(option, isPositional) + value, option->get_description(),
                kDescriptionColumn);
}

std::string HelpFormatter::make_option_opts(const CLI::Option* option) const {
    const std::string value = ValueName(*option);
    return value.empty() ? value : ' ' + value;
}

} // namespace scenedetect
