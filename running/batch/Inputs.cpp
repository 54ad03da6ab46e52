#include "running/batch/Inputs.h"

#include "reading/base/FilePath.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <string_view>

namespace scenedetect {
namespace {

namespace fs = std::filesystem;

constexpr std::array<std::string_view, 34> kVideoSuffixes = {
    ".3gp", ".asf",  ".avi", ".dif", ".divx", ".dv",  ".dvsd", ".f4v", ".flv",  ".gxf",  ".ivf", ".m1v",
    ".m2t", ".m2ts", ".m2v", ".m4v", ".mj2",  ".mkv", ".mod",  ".mov", ".mp4",  ".mpeg", ".mpg", ".mpv",
    ".mts", ".mxf",  ".nut", ".ogv", ".qt",   ".tod", ".ts",   ".vob", ".webm", ".wmv"};

bool IsVideoFile(const fs::directory_entry& entry) {
    // Hidden files are other programs' unfinished ones.
    if (NameOfPath(entry.path().filename()).starts_with('.'))
        return false;
    std::string suffix = NameOfPath(entry.path().extension());
    std::transform(suffix.begin(), suffix.end(), suffix.begin(),
                   [](unsigned char each) { return static_cast<char>(std::tolower(each)); });
    std::error_code none;
    return std::find(kVideoSuffixes.begin(), kVideoSuffixes.end(), suffix) != kVideoSuffixes.end() &&
           entry.is_regular_file(none);
}

void AddVideoFilesIn(const fs::path& folder, std::vector<Input>& found) {
    std::error_code error;
    fs::directory_iterator entry(folder, error);
    for (; !error && entry != fs::directory_iterator(); entry.increment(error)) {
        std::error_code none;
        if (entry->is_directory(none) && !entry->is_symlink(none))
            AddVideoFilesIn(entry->path(), found);
        else if (IsVideoFile(*entry))
            found.push_back({NameOfPath(entry->path()), ""});
    }
    if (error)
        found.push_back({NameOfPath(folder), "cannot be read: " + error.message()});
}

} // namespace

std::vector<Input> ExpandInputs(const std::vector<std::string>& inputs) {
    std::vector<Input> all;
    for (const std::string& input : inputs) {
        std::error_code none;
        if (!fs::is_directory(FilePath(input), none)) {
            all.push_back({input, ""});
            continue;
        }
        std::vector<Input> found;
        AddVideoFilesIn(FilePath(input), found);
        if (found.empty())
            found.push_back({input, "no video file in this folder"});
        std::ranges::sort(found);
        all.insert(all.end(), found.begin(), found.end());
    }
    return all;
}

} // namespace scenedetect
