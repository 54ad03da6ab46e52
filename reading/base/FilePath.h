// File names as the hosts carry them, UTF-8 in every locale, in the form of the file-system library.
#pragma once

#include <algorithm>
#include <filesystem>
#include <string>

namespace scenedetect {

[[nodiscard]] inline std::filesystem::path FilePath(const std::string& name) {
    return std::u8string(name.begin(), name.end());
}

/// And back, with "/" between folders.
[[nodiscard]] inline std::string NameOfPath(const std::filesystem::path& path) {
    const std::u8string text = path.u8string();
    std::string name(text.begin(), text.end());
    // Also in names of servers and of the system's own form, which the library leaves as they are.
    if constexpr (std::filesystem::path::preferred_separator != '/')
        std::ranges::replace(name, '\\', '/');
    return name;
}

[[nodiscard]] inline std::string PathIn(const std::string& folder, const std::string& name) {
    return NameOfPath(FilePath(folder) / FilePath(name));
}

} // namespace scenedetect
