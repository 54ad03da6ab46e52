// What the system tells of files and folders by their names.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <utility>
#include <vector>

namespace scenedetect {

/// A regular file, whatever its names; two zeros where there is none.
using FileIdentity = std::pair<std::uint64_t, std::uint64_t>;

struct FileFacts {
    bool isThere = false; ///< whatever it is
    bool isFolder = false;
    bool isFile = false; ///< a regular one
    std::int64_t size = 0;
    FileIdentity identity{};
};

/// Of what the name leads to, through links. Names have any length, here and below.
[[nodiscard]] FileFacts FactsOf(const std::string& path);

/// From the root on, without "." and ".."; links stay. The library's own way knows no network folders on
/// Windows.
[[nodiscard]] std::filesystem::path WholePath(const std::string& path);

struct FolderEntry {
    std::string name;      ///< without the folder
    bool isFolder = false; ///< itself, not through a link
};

/// Adds all that is in a folder, in no order. Returns why some of it can't be known; nothing when all is
/// there.
[[nodiscard]] std::string ListFolder(const std::string& folder, std::vector<FolderEntry>& entries);

/// The names that an argument with * or ? stands for, sorted, where shells leave that to programs; elsewhere
/// itself.
[[nodiscard]] std::vector<std::string> NamesLike(const std::string& argument);

} // namespace scenedetect
