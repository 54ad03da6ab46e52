// File names as the hosts carry them, UTF-8 in every locale, in the form of the file-system library.
#pragma once

#include <filesystem>
#include <string>

namespace scenedetect {

[[nodiscard]] inline std::filesystem::path FilePath(const std::string& name) {
    return std::u8string(name.begin(), name.end());
}

/// And back, with "/" between folders.
[[nodiscard]] inline std::string NameOfPath(const std::filesystem::path& path) {
    const std::u8string name = path.generic_u8string();
    return {name.begin(), name.end()};
}

} // namespace scenedetect
