#include "products/listed/SceneList.h"

#include "products/listed/ListReaders.h"
#include "products/outputs/NameText.h"
#include "reading/base/HostError.h"
#include "reading/readers/StreamInput.h"

#include <algorithm>

namespace scenedetect {

void FailInList(const std::string& path, const std::string& where, const std::string& what) {
    std::string line = what; // whatever stands in the list
    std::ranges::replace_if(
        line, [](unsigned char letter) { return letter < ' ' || letter == 0x7F; }, '?');
    throw HostError(path + (where.empty() ? "" : ", " + where) + ": " + line);
}

SceneList ParseSceneList(std::string_view text, const std::string& path) {
    constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
    if (text.starts_with(kByteOrderMark))
        text.remove_prefix(kByteOrderMark.size());
    SceneList list;
    list.path = path;
    const std::size_t begin = text.find_first_not_of(" \t\r\n");
    if (begin != text.npos && text[begin] == '{')
        ReadJsonList(text, list);
    else if (IsEdl(text))
        ReadEdlList(text, list);
    else
        ReadCsvList(text, list);
    if (list.scenes.empty())
        FailInList(path, "", "no scene stands there");
    for (ListedScene& scene : list.scenes)
        scene.name = PlainName(scene.name);
    return list;
}

SceneList ReadSceneListFile(const std::string& path) {
    return ParseSceneList(ReadTextFile(path), path);
}

} // namespace scenedetect
