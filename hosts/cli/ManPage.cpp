#include "hosts/cli/ManPage.h"

#include "hosts/cli/OptionTable.h"
#include "reading/base/HostError.h"

#include <sstream>
#include <string_view>
#include <utility>

namespace scenedetect {
namespace {

// Text in which nothing is a request, an escape or a hyphen that may become another sign.
std::string Roff(const std::string& text) {
    std::string escaped;
    for (const char each : text)
        escaped += each == '\\' ? "\\e" : each == '-' ? "\\-" : std::string(1, each);
    return escaped.starts_with('.') || escaped.starts_with('\'') ? "\\&" + escaped : escaped;
}

std::string Entry(const CLI::Option& option) {
    std::string names;
    for (const std::string& name : option.get_snames())
        names += "\\fB" + Roff('-' + name) + "\\fR, ";
    for (const std::string& name : option.get_lnames())
        names += "\\fB" + Roff("--" + name) + "\\fR, ";
    names.resize(names.size() - std::string_view(", ").size());
    const std::string value = ValueName(option);
    return ".TP\n" + names + (value.empty() ? "" : " \\fI" + Roff(value) + "\\fR") + '\n' +
           Roff(option.get_description()) + (option.get_description().ends_with('.') ? "\n" : ".\n");
}

std::string OptionsOf(const CLI::App& app) {
    std::string text;
    for (const std::string& group : app.get_groups()) {
        const auto options = app.get_options([&group](const CLI::Option* option) {
            return option->get_group() == group && option->nonpositional();
        });
        if (group.empty() || options.empty())
            continue;
        text += ".SS " + group + '\n';
        for (const CLI::Option* option : options)
            text += Entry(*option);
    }
    return text;
}

void Replace(std::string& page, std::string_view mark, const std::string& text) {
    const std::size_t at = page.find(mark);
    if (at == std::string::npos)
        throw HostError("the manual page has no " + std::string(mark));
    page.replace(at, mark.size(), text);
}

// Lines of text within 80 columns, as readers of the page's source expect them.
std::string Fold(const std::string& page) {
    constexpr std::size_t kColumns = 80;
    std::string folded;
    std::istringstream lines(page);
    for (std::string line; std::getline(lines, line);) {
        while (line.size() > kColumns && line[0] != '.') {
            const std::size_t space = line.rfind(' ', kColumns);
            if (space == std::string::npos)
                break;
            folded += line.substr(0, space) + '\n';
            line.erase(0, space + 1);
            if (line[0] == '.' || line[0] == '\'')
                line.insert(0, "\\&");
        }
        folded += line + '\n';
    }
    return folded;
}

} // namespace

std::string FillManPage(std::string page, const HostProgram& program, const std::string& version) {
    Replace(page, "@VERSION@", version);
    Replace(page, "@OPTIONS@\n", OptionsOf(OptionTable(program).app));
    return Fold(page);
}

} // namespace scenedetect
