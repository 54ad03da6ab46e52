#include "products/outputs/NameText.h"

#include "platform/Text.h"
#include "reading/base/FileFacts.h"
#include "reading/base/FilePath.h"

#include <string_view>

namespace scenedetect {
namespace {

constexpr wchar_t kReplacement = 0xFFFD;

bool IsControl(wchar_t character) {
    return character < 0x20 || (character >= 0x7F && character < 0xA0);
}

// The two of the first plane that stand for nothing, and that XML forbids.
bool IsNoCharacter(wchar_t character) {
    return character == 0xFFFE || character == 0xFFFF;
}

// What needs no encoding in a URL, whatever its part.
bool IsUnreserved(char byte) {
    return (byte >= 'A' && byte <= 'Z') || (byte >= 'a' && byte <= 'z') || (byte >= '0' && byte <= '9') ||
           std::string_view("-._~/").find(byte) != std::string_view::npos;
}

std::string UrlPath(const std::string& path) {
    std::string url;
    for (const char byte : path) {
        if (IsUnreserved(byte)) {
            url += byte;
            continue;
        }
        constexpr char kDigits[] = "0123456789ABCDEF";
        const auto value = static_cast<unsigned char>(byte);
        url += {'%', kDigits[value >> 4], kDigits[value & 0x0F]};
    }
    return url;
}

} // namespace

std::string PlainName(const std::string& name) {
    std::wstring text = WideFromUtf8(name);
    for (wchar_t& character : text) {
        if (IsControl(character))
            character = L' ';
        else if (IsNoCharacter(character))
            character = kReplacement;
    }
    return Utf8FromWide(text);
}

std::string FileName(const std::string& path) {
    return PlainName(NameOfPath(FilePath(path).filename()));
}

std::string MediaUrl(const std::string& path) {
    if (path == "-")
        return "";
    if (path.find("://") != std::string::npos)
        return PlainName(path);
    const std::filesystem::path whole = WholePath(path);
    const std::string name = NameOfPath(whole);
    if (name.starts_with("//")) // and a server's name
        return "file:" + UrlPath(name);
    const std::string drive = NameOfPath(whole.root_name()); // where there are any
    return "file://" + (drive.empty() ? "" : '/' + drive) + UrlPath(name.substr(drive.size()));
}

std::string RelativeUrl(const std::string& path, const std::string& from) {
    const std::filesystem::path relative = WholePath(path).lexically_relative(WholePath(from).parent_path());
    return relative.empty() ? MediaUrl(path) : UrlPath(NameOfPath(relative));
}

} // namespace scenedetect
