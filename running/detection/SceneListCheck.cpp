#include "running/detection/SceneListCheck.h"

#include "platform/File.h"
#include "platform/Text.h"
#include "reading/base/FileFacts.h"
#include "reading/base/FilePath.h"
#include "reading/base/HostError.h"

#include <array>
#include <string_view>
#include <system_error>

namespace scenedetect {
namespace {

std::string ReadWhole(const std::string& path) {
    std::string text;
    File file;
    if (!file.Open(WideFromUtf8(path), File::Mode::Read))
        return text;
    std::array<char, 4096> piece{};
    while (const std::size_t bytes = file.Read(piece.data(), piece.size()))
        text.append(piece.data(), bytes);
    return text;
}

// The next line without its end; nothing when no whole one is left.
std::string_view TakeLine(std::string_view& text) {
    constexpr std::string_view kLineEnd = "\r\n";
    const std::size_t end = text.find(kLineEnd);
    if (end == std::string_view::npos)
        return {};
    const std::string_view line = text.substr(0, end);
    text.remove_prefix(end + kLineEnd.size());
    return line;
}

bool IsWhole(std::string_view text, std::int64_t sceneCount) {
    if (!TakeLine(text).starts_with("<SceneList count=\"" + std::to_string(sceneCount) + "\""))
        return false;
    std::int64_t scenes = 0;
    std::string_view line = TakeLine(text);
    for (; line.starts_with("<Scene pos=\"") && line.ends_with("\"/>"); line = TakeLine(text))
        ++scenes;
    return scenes == sceneCount && line == "</SceneList>" && text.empty();
}

} // namespace

void RequireSceneListName(const std::string& path, const std::string& input) {
    std::error_code none;
    if (std::filesystem::equivalent(FilePath(path), FilePath(input), none))
        throw HostError(path + ": is the input, the scene list would overwrite it");
    if (Utf8FromWide(WideFromUtf8(path)) != path)
        throw HostError(path + ": the scene list cannot be written: the name is not UTF-8");
}

std::string ReadSceneList(const std::string& path, std::int64_t sceneCount) {
    // Reading back from a device would tell nothing, or never end.
    std::string text = FactsOf(path).isFile ? ReadWhole(path) : "";
    if (!IsWhole(text, sceneCount))
        throw HostError(path + ": the scene list could not be written whole (is there room?)");
    return text;
}

} // namespace scenedetect
