#include "hosts/shared/CommonOptions.h"

#include "hosts/shared/HostError.h"
#include "hosts/shared/OptionTable.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <utility>

namespace scenedetect {
namespace {

constexpr std::pair<KxDetectionMethod, const char*> kMethodWords[] = {{KxMethodTimestamp, "timestamp"},
                                                                      {KxMethodVideo, "video"},
                                                                      {KxMethodInterval, "interval"},
                                                                      {KxMethodManual, "manual"}};

bool Has(const Options& options, KxDetectionMethod method) {
    return std::count(options.methods.begin(), options.methods.end(), method) != 0;
}

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

// Reads the settings for what `given` has not, and parses all again into `table`. What is wrong, if anything.
std::string AddSettings(const HostProgram& program, CLI::App& given, const Arguments& arguments,
                        OptionTable& table) {
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

// What CLI11 doesn't see: options that do not go together. A setting that waits for its method is none of
// these, other than an option that is `given` on the command line.
std::string FindContradiction(const HostProgram& program, const CLI::App& given, Options& options) {
    if (Has(options, KxMethodInterval) && options.interval == 0)
        return "--method interval needs --interval N";
    if (!Has(options, KxMethodInterval) && given.count("--interval") != 0)
        return "--interval goes with --method interval only";
    if (!Has(options, KxMethodInterval))
        options.interval = 0;
    if (!program.takesMany && (options.methods.size() > 1 || options.inputs.size() > 1))
        return options.methods.size() > 1 ? "one --method at a time" : "one file at a time";
    if (std::count(options.inputs.begin(), options.inputs.end(), "") != 0 ||
        (given.count("--xml") != 0 && options.xmlPath.empty()))
        return "a file name is empty";
    return "";
}

CommandLine WrongUsage(const HostProgram& program, const std::string& what) {
    std::string line = program.name + ": error: " + what + " (see " + program.name + " --help)";
    std::replace(line.begin(), line.end(), '\n', ' ');
    return {std::nullopt, line + '\n', kExitUsage};
}

} // namespace

std::string MethodWord(KxDetectionMethod method) {
    for (const auto& [each, name] : kMethodWords)
        if (each == method)
            return name;
    return "";
}

std::optional<KxDetectionMethod> MethodOf(const std::string& word) {
    for (const auto& [method, name] : kMethodWords)
        if (word == name)
            return method;
    return std::nullopt;
}

CommandLine ParseCommandLine(const HostProgram& program, int argc, const char* const* argv) {
    const Arguments arguments(argv + std::min(argc, 1), argv + argc);
    OptionTable given(program);
    OptionTable withSettings(program);
    const bool hasSettings = program.readSettings != nullptr;
    std::string wrong;
    try {
        Parse(given.app, arguments);
        if (hasSettings)
            wrong = AddSettings(program, given.app, arguments, withSettings);
    } catch (const CLI::CallForHelp&) {
        return {std::nullopt, given.app.help(), kExitSuccess};
    } catch (const CLI::CallForVersion& call) {
        return {std::nullopt, call.what() + std::string("\n"), kExitSuccess};
    } catch (const CLI::ParseError& error) {
        wrong = error.what();
    } catch (const HostError& error) {
        wrong = error.what();
    }
    if (!wrong.empty())
        return WrongUsage(program, wrong);

    OptionTable& table = hasSettings ? withSettings : given;
    Options options = std::move(table.options);
    for (const std::string& word : table.methodWords)
        if (const KxDetectionMethod method = MethodOf(word).value(); !Has(options, method))
            options.methods.push_back(method);
    if (options.methods.empty())
        options.methods = {KxMethodVideo};
    wrong = FindContradiction(program, given.app, options);
    if (wrong.empty() && program.check)
        wrong = program.check(options);
    if (!wrong.empty())
        return WrongUsage(program, wrong);
    std::sort(options.marks.begin(), options.marks.end());
    options.marks.erase(std::unique(options.marks.begin(), options.marks.end()), options.marks.end());
    return {std::move(options), "", kExitSuccess};
}

} // namespace scenedetect
