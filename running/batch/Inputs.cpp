#include "running/batch/Inputs.h"

#include "reading/base/FileFacts.h"
#include "reading/base/FilePath.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <iterator>
#include <string_view>

namespace scenedetect {
namespace {

constexpr std::array<std::string_view, 34> kVideoSuffixes = {
    ".3gp", ".asf",  ".avi", ".dif", ".divx", ".dv",  ".dvsd", ".f4v", ".flv",  ".gxf",  ".ivf", ".m1v",
    ".m2t", ".m2ts", ".m2v", ".m4v", ".mj2",  ".mkv", ".mod",  ".mov", ".mp4",  ".mpeg", ".mpg", ".mpv",
    ".mts", ".mxf",  ".nut", ".ogv", ".qt",   ".tod", ".ts",   ".vob", ".webm", ".wmv"};

bool IsVideoFile(const std::string& name) {
    // Hidden files are other programs' unfinished ones.
    if (name.starts_with('.'))
        return false;
    std::string suffix = NameOfPath(FilePath(name).extension());
    std::transform(suffix.begin(), suffix.end(), suffix.begin(),
                   [](unsigned char each) { return static_cast<char>(std::tolower(each)); });
    return std::find(kVideoSuffixes.begin(), kVideoSuffixes.end(), suffix) != kVideoSuffixes.end();
}

void AddVideoFilesIn(const std::string& folder, std::vector<Input>& found) {
    std::vector<FolderEntry> entries;
    const std::string fault = ListFolder(folder, entries);
    for (const auto& [name, isFolder] : entries) {
        const std::string path = PathIn(folder, name);
        if (isFolder)
            AddVideoFilesIn(path, found);
        else if (IsVideoFile(name) && FactsOf(path).isFile)
            found.push_back({path, ""});
    }
    if (!fault.empty())
        found.push_back({folder, "cannot be read: " + fault});
}

// What one argument stands for, when it is no pattern.
std::vector<Input> Expand(const std::string& input) {
    if (!FactsOf(input).isFolder)
        return {{input, ""}};
    std::vector<Input> found;
    AddVideoFilesIn(input, found);
    if (found.empty())
        return {{input, "no video file in this folder"}};
    std::ranges::sort(found);
    return found;
}

} // namespace

std::vector<Input> ExpandInputs(const std::vector<std::string>& inputs) {
    std::vector<Input> all;
    for (const std::string& input : inputs) {
        const std::vector<std::string> names = NamesLike(input);
        if (names.empty())
            all.push_back({input, "no file has such a name"});
        for (const std::string& name : names)
            std::ranges::move(Expand(name), std::back_inserter(all));
    }
    return all;
}

} // namespace scenedetect
