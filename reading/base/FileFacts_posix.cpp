#include "reading/base/FileFacts.h"
#include "reading/base/FilePath.h"

#include <sys/stat.h>
#include <system_error>

namespace scenedetect {

FileFacts FactsOf(const std::string& path) {
    struct stat status {};
    if (stat(path.c_str(), &status) != 0)
        return {};
    if (!S_ISREG(status.st_mode))
        return {.isThere = true, .isFolder = S_ISDIR(status.st_mode)};
    return {true, false, true, status.st_size, {status.st_dev, status.st_ino}};
}

std::filesystem::path WholePath(const std::string& path) {
    return std::filesystem::absolute(FilePath(path)).lexically_normal();
}

std::string ListFolder(const std::string& folder, std::vector<FolderEntry>& entries) {
    namespace fs = std::filesystem;
    std::error_code error;
    fs::directory_iterator entry(FilePath(folder), error);
    for (; !error && entry != fs::directory_iterator(); entry.increment(error)) {
        std::error_code none;
        entries.push_back(
            {NameOfPath(entry->path().filename()), entry->is_directory(none) && !entry->is_symlink(none)});
    }
    return error ? error.message() : "";
}

std::vector<std::string> NamesLike(const std::string& argument) {
    return {argument};
}

} // namespace scenedetect
