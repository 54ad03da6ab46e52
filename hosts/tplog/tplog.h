// The entries of the logging library: messages of a category and a level, as 16-bit text.
#pragma once

#include <cstdarg>
#include <cstdint>

// Callable from any thread. TPLOG_LEVEL and TPLOG_FILE, read when the library is loaded, say what is printed
// and where.
extern "C" {

/// Prints a message. `format` is finished text: no argument is read, whatever placeholders it contains, since
/// the library cannot know how many there are. "%%" prints as "%", every other placeholder as it stands.
void tpcore_wPrintf(std::uint32_t category, std::uint32_t level, const char16_t* format, ...) noexcept;

/// Prints a message whose placeholders are filled from `arguments`, which must match them. "%s" and "%c" take
/// 16-bit text, "%S", "%C", "%hs" and "%hc" UTF-8; what is no known placeholder prints as it stands.
void tpcore_wvPrintf(std::uint32_t category, std::uint32_t level, const char16_t* format,
                     std::va_list arguments) noexcept;

/// Whether a message of this category and level would be printed.
bool tpcore_wPrintf_IsUserLevelActive(std::uint32_t category, std::uint32_t level) noexcept;
}
