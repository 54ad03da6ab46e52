// Configuration files: refused in one line that begins with their place, or read and taken as options.
#include "fuzz/Input.h"
#include "fuzz/MemoryFile.h"
#include "hosts/cli/ConfigFile.h"
#include "hosts/cli/KxOptions.h"
#include "platform/Text.h"
#include "reading/base/HostError.h"

#include <set>
#include <string>

using namespace scenedetect;
using fuzz::Require;

namespace {

void CheckSettings(const std::string& path, std::int64_t lines) {
    try {
        std::set<std::string> names;
        std::int64_t before = 0;
        for (const Setting& each : ReadConfigFile(path)) {
            Require(names.insert(each.name).second && each.file == path);
            Require(each.line >= before && each.line <= lines && each.line > 0);
            before = each.line;
        }
    } catch (const HostError& error) {
        Require(std::string_view(error.what()).starts_with(path + ':'));
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const fuzz::MemoryFile file(data, size);
    const std::string path = Utf8FromWide(file.Path());
    CheckSettings(path, std::count(data, data + size, '\n') + 1);

    KxOptions options;
    const char* const arguments[] = {"kxscenes", "--config", path.c_str(), "tape.dv"};
    if (const auto end = ParseCommandLine(4, arguments, options))
        Require(end->exitCode == kExitUsage && end->text.find('\n') == end->text.size() - 1);
    else
        Require(options.batch.inputs == std::vector<std::string>{"tape.dv"});
    return 0;
}
