#include "support/Timecode.h"

#include <cwchar>
#include <iterator>

namespace scenedetect {

void FramesToTimecodeText(std::wstring& text, std::int32_t frames, bool full, std::int32_t framesPerSecond) {
    // Deliberate: truncating division leaves the sign of a negative count in every field.
    const std::int32_t seconds = frames / framesPerSecond;
    const std::int32_t rest = frames % framesPerSecond;
    wchar_t buffer[64];
    std::swprintf(buffer, std::size(buffer), L"%02d:%02d:%02d:%02d", seconds / 60 / 60, (seconds / 60) % 60,
                  seconds % 60, rest);
    text = buffer;
    if (full)
        return;
    const std::size_t first = text.find_first_not_of(L"0:");
    text.erase(0, first == std::wstring::npos ? text.size() - 1 : first);
}

} // namespace scenedetect
