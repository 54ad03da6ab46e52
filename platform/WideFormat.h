// Bounded printf-style formatting of wide text, with the same meaning of the placeholders on every system.
#pragma once

#include <cstdarg>
#include <cstddef>

namespace scenedetect {

/// Expands `format` into `buffer` of `capacity` (at least 2) characters; the text is always terminated.
/// "%s" and "%c" take wide arguments, "%S", "%C", "%hs" and "%hc" narrow ones; the rest is as in printf.
/// Returns the number of characters; negative when they did not fit, with the first capacity - 1 of them
/// written. A text that cannot be formatted is empty. A format that is itself longer than 1000 characters
/// may be cut. Allocates nothing of its own.
int FormatWide(wchar_t* buffer, std::size_t capacity, const wchar_t* format, std::va_list arguments) noexcept;

} // namespace scenedetect
