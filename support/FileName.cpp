#include "support/FileName.h"

#include "platform/ProgramPath.h"

#include <algorithm>
#include <cwctype>

namespace scenedetect {
namespace {

constexpr std::wstring_view kInvalid = L":/|?*\"\\";
constexpr std::wstring_view kReplacements = L"--- _'-";
static_assert(kInvalid.size() == kReplacements.size());

constexpr std::size_t kLongestPath = 259;

bool IsNoSpace(wchar_t character) {
    return std::iswspace(static_cast<std::wint_t>(character)) == 0;
}

} // namespace

bool MakeValidFileName(std::wstring& text) {
    text.erase(text.begin(), std::find_if(text.begin(), text.end(), IsNoSpace));
    text.erase(std::find_if(text.rbegin(), text.rend(), IsNoSpace).base(), text.end());
    return ReplaceChars(text, kInvalid, kReplacements);
}

bool ContainsInvalidFileNameChar(std::wstring_view text) {
    return text.find_first_of(kInvalid) != std::wstring_view::npos;
}

bool ReplaceChars(std::wstring& text, std::wstring_view from, std::wstring_view to) {
    bool replaced = false;
    for (wchar_t& character : text) {
        const std::size_t place = from.find(character);
        if (place >= to.size())
            continue;
        character = to[place];
        replaced = true;
    }
    return replaced;
}

void GetHostExecutablePath(std::wstring& text) {
    text = ProgramPath().substr(0, kLongestPath);
}

} // namespace scenedetect
