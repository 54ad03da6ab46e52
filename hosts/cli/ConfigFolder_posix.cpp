#include "hosts/cli/ConfigFile.h"

#include <cstdlib>

namespace scenedetect {
namespace {

std::filesystem::path Variable(const char* name) {
    const char* value = std::getenv(name);
    return value ? value : "";
}

} // namespace

std::filesystem::path UserConfigFolder() {
    const std::filesystem::path folder = Variable("XDG_CONFIG_HOME");
    // One that is not absolute does not count, by the rules for that variable.
    return folder.is_absolute() ? folder : Variable("HOME") / ".config";
}

} // namespace scenedetect
