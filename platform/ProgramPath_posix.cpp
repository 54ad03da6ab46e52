#include "platform/ProgramPath.h"

#include "platform/Text.h"

#include <filesystem>
#include <system_error>

namespace scenedetect {

std::wstring ProgramPath() {
    std::error_code error;
    return WideFromUtf8(std::filesystem::read_symlink("/proc/self/exe", error).native());
}

} // namespace scenedetect
