#include "platform/WideFormat.h"

#include <cwchar>

namespace scenedetect {

int FormatWide(wchar_t* buffer, std::size_t capacity, const wchar_t* format,
               std::va_list arguments) noexcept {
    // The runtime library's own function takes the placeholders as described; the standard one does not in
    // every runtime. It reports a text that is too long and one that cannot be formatted alike; only the
    // first has reached the last place but one.
    buffer[0] = 0;
    wchar_t& last = buffer[capacity - 2];
    last = 0;
    const int length = _vsnwprintf(buffer, capacity - 1, format, arguments);
    buffer[capacity - 1] = 0;
    if (length >= 0)
        return length;
    if (last != 0)
        return -1;
    buffer[0] = 0;
    return 0;
}

} // namespace scenedetect
