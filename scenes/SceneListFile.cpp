#include "scenes/SceneListFile.h"

#include "platform/File.h"
#include "support/DebugLog.h"

#include <algorithm>
#include <cstdio>
#include <iterator>

namespace scenedetect {

namespace {

// Indexed by the method numbers.
constexpr const char* kMethodWords[] = {"Timestamp", "Video", "Interval", "Manual"};

// One write per line: a program that reads the file meanwhile sees whole lines.
template <typename... Values>
bool WriteLine(File& file, const char* format, Values... values) {
    char line[96];
    const int length = std::snprintf(line, sizeof line, format, values...);
    return length > 0 && file.Write(line, static_cast<std::size_t>(length));
}

bool WriteLines(File& file, const std::vector<std::int32_t>& positions, std::uint32_t method) {
    const unsigned long long count = positions.size();
    const bool headWritten =
        method < std::size(kMethodWords)
            ? WriteLine(file, "<SceneList count=\"%llu\" method=\"%s\">\r\n", count, kMethodWords[method])
            : WriteLine(file, "<SceneList count=\"%llu\">\r\n", count);
    return headWritten &&
           std::all_of(positions.begin(), positions.end(),
                       [&](std::int32_t position) {
                           return WriteLine(file, "<Scene pos=\"%d\"/>\r\n", static_cast<int>(position));
                       }) &&
           WriteLine(file, "%s", "</SceneList>\r\n");
}

} // namespace

void WriteSceneListFile(const std::wstring& path, const std::vector<std::int32_t>& positions,
                        std::uint32_t method) {
    File file;
    if (!file.Open(path, File::Mode::Write)) {
        DebugPrintAt(kLogCategorySceneDetect, kLogLevelFailure,
                     L"SceneDetectFilter::WriteSceneListFile - cannot open file: %s\n", path.c_str());
        return;
    }
    if (WriteLines(file, positions, method))
        DebugPrintAt(kLogCategorySceneDetect, kLogLevelResult,
                     L"SceneDetectFilter::WriteSceneListFile successful - file: %s\n", path.c_str());
    else
        DebugPrintAt(kLogCategorySceneDetect, kLogLevelFailure,
                     L"SceneDetectFilter::WriteSceneListFile error during writing - file: %s\n",
                     path.c_str());
}

} // namespace scenedetect
