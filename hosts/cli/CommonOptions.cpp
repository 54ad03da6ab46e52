#include "hosts/cli/CommonOptions.h"

#include "hosts/cli/OptionTable.h"
#include "reading/base/HostError.h"
#include "reading/base/StandardStreams.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <utility>

namespace scenedetect {
namespace {

using Arguments = std::vector<std::string>;

void Parse(CLI::App& app, Arguments arguments) {
    std::reverse(arguments.begin(), arguments.end()); // as the library takes them
    app.parse(std::move(arguments));
}

CLI::Option* FindOption(CLI::App& app, const Setting& setting) {
    CLI::Option* option = app.get_option_no_throw("--" + setting.name);
    return option && option->get_configurable() ? option : nullptr;
}

// What the command line says itself, or says the contrary of, stays as it is there.
bool IsOverruled(const CLI::Option& option) {
    const auto others = option.get_excludes();
    return option.count() != 0 || std::any_of(others.begin(), others.end(),
                                              [](const CLI::Option* other) { return other->count() != 0; });
}

std::string Place(const Setting& setting) {
    return setting.file + ':' + std::to_string(setting.line) + ": ";
}

Arguments ArgumentsOf(const Setting& setting) {
    Arguments arguments;
    for (const std::string& value : setting.values)
        arguments.push_back("--" + setting.name + '=' + value);
    return arguments;
}

// The first of the settings that is wrong by itself, as a line of text.
std::string FindWrong(const HostProgram& program, const std::vector<Setting>& settings) {
    for (const Setting& setting : settings) {
        OptionTable table(program);
        table.app.get_option("INPUT")->required(false);
        try {
            Parse(table.app, ArgumentsOf(setting));
        } catch (const CLI::ParseError& error) {
            return Place(setting) + error.what();
        }
    }
    return "";
}

// Reads the settings for what `given` has not, and parses all again. What is wrong, if anything.
std::string AddSettings(const HostProgram& program, CLI::App& given, const Arguments& arguments) {
    std::vector<Setting> settings = program.readSettings();
    for (const Setting& setting : settings)
        if (!FindOption(given, setting))
            return Place(setting) + "no such setting: " + setting.name;
    std::erase_if(settings, [&](const Setting& each) { return IsOverruled(*FindOption(given, each)); });
    Arguments all;
    for (const Setting& setting : settings)
        for (std::string& argument : ArgumentsOf(setting))
            all.push_back(std::move(argument));
    all.insert(all.end(), arguments.begin(), arguments.end());
    OptionTable table(program);
    try {
        Parse(table.app, std::move(all));
    } catch (const CLI::ParseError& error) {
        const std::string wrong = FindWrong(program, settings);
        if (!wrong.empty() || settings.empty())
            return wrong.empty() ? error.what() : wrong;
        return error.what() + (" (with the settings of " + settings.front().file + ')');
    }
    return "";
}

// What CLI11 doesn't see: options that do not go together. An interval in a configuration file may wait for
// its method; one that is `given` on the command line may not.
std::string FindContradiction(const HostProgram& program, const CLI::App& given) {
    DetectionSettings& detection = program.common.detection;
    if (detection.Uses(KxMethodInterval) && detection.interval == 0)
        return "--method interval needs --interval N";
    if (!detection.Uses(KxMethodInterval) && given.count("--interval") != 0)
        return "--interval goes with --method interval only";
    if (!detection.Uses(KxMethodInterval))
        detection.interval = 0;
    const std::vector<std::string>& inputs = program.common.inputs;
    if (!program.takesMany && (detection.methods.size() > 1 || inputs.size() > 1))
        return detection.methods.size() > 1 ? "one --method at a time" : "one file at a time";
    if (std::count(inputs.begin(), inputs.end(), "") != 0 ||
        (given.count("--xml") != 0 && program.common.xmlPath.empty()))
        return "a file name is empty";
    return "";
}

EarlyEnd WrongUsage(const HostProgram& program, const std::string& what) {
    std::string line = program.name + ": error: " + what + " (see " + program.name + " --help)";
    std::replace(line.begin(), line.end(), '\n', ' ');
    return {line + '\n', kExitUsage};
}

} // namespace

int PrintAndEnd(const EarlyEnd& end) {
    if (end.exitCode == kExitSuccess)
        WriteOutput(end.text);
    else
        WriteError(end.text);
    return end.exitCode;
}

std::optional<EarlyEnd> ParseCommandLine(const HostProgram& program, int argc, const char* const* argv) {
    const Arguments arguments(argv + std::min(argc, 1), argv + argc);
    OptionTable given(program);
    std::string wrong;
    try {
        Parse(given.app, arguments);
        if (program.readSettings)
            wrong = AddSettings(program, given.app, arguments);
    } catch (const CLI::CallForHelp&) {
        return EarlyEnd{given.app.help(), kExitSuccess};
    } catch (const CLI::CallForVersion& call) {
        return EarlyEnd{call.what() + std::string("\n"), kExitSuccess};
    } catch (const CLI::ParseError& error) {
        wrong = error.what();
    } catch (const HostError& error) {
        wrong = error.what();
    }
    if (wrong.empty())
        wrong = FindContradiction(program, given.app);
    if (wrong.empty() && program.check)
        wrong = program.check();
    if (!wrong.empty())
        return WrongUsage(program, wrong);
    return std::nullopt;
}

} // namespace scenedetect
