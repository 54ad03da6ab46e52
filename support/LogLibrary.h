// How the logging library is called on this system: its file, its entries' names and their text.
#pragma once

#include <cstdint>

namespace scenedetect {

// The entries, in every system's own calling convention. Text is 16-bit; wPrintf takes its text as a format.
using LogPrint = void(std::uint32_t category, std::uint32_t level, const char16_t* format, ...);
using LogIsLevelActive = bool(std::uint32_t category, std::uint32_t level);

extern const wchar_t* const kLogLibraryFile;
extern const char* const kLogPrintName;
extern const char* const kLogPrintListName;
extern const char* const kLogIsLevelActiveName;

/// The longest text of a message, in characters; a buffer for one needs a place more.
inline constexpr int kLogTextLength = 511;

/// Hands `text` (at most kLogTextLength characters) to `print` as its format, with no arguments.
void SendLogText(LogPrint* print, std::uint32_t category, std::uint32_t level, const wchar_t* text) noexcept;

} // namespace scenedetect
