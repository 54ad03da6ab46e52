#include "running/batch/Inputs.h"

#include "reading/base/HostError.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <filesystem>
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
    if (entry.path().filename().string().starts_with('.'))
        return false;
    std::string suffix = entry.path().extension().string();
    std::transform(suffix.begin(), suffix.end(), suffix.begin(),
                   [](unsigned char each) { return static_cast<char>(std::tolower(each)); });
    std::error_code none;
    return std::find(kVideoSuffixes.begin(), kVideoSuffixes.end(), suffix) != kVideoSuffixes.end() &&
           entry.is_regular_file(none);
}

std::vector<std::string> VideoFilesIn(const std::string& folder) {
    std::vector<std::string> files;
    std::error_code error;
    fs::recursive_directory_iterator entry(folder, error);
    for (; !error && entry != fs::recursive_directory_iterator(); entry.increment(error))
        if (IsVideoFile(*entry))
            files.push_back(entry->path().string());
    if (error)
        throw HostError(folder + ": cannot be read: " + error.message());
    if (files.empty())
        throw HostError(folder + ": no video file in this folder");
    std::sort(files.begin(), files.end());
    return files;
}

} // namespace

std::vector<std::string> ExpandInputs(const std::vector<std::string>& inputs) {
    std::vector<std::string> files;
    for (const std::string& input : inputs) {
        std::error_code none;
        if (fs::is_directory(input, none))
            for (std::string& file : VideoFilesIn(input))
                files.push_back(std::move(file));
        else
            files.push_back(input);
    }
    return files;
}

} // namespace scenedetect
