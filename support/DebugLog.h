// Diagnostic messages for the optional logging library: formatted here, written (or not) by it.
#pragma once

#include <cstdint>
#include <string>

namespace scenedetect {

inline constexpr std::uint32_t kLogCategorySupport = 700;
inline constexpr std::uint32_t kLogCategorySceneDetect = 702;

// Levels within a category; the logging library decides which of them it wants.
inline constexpr std::uint32_t kLogLevelFailure = 0;
inline constexpr std::uint32_t kLogLevelResult = 1;
inline constexpr std::uint32_t kLogLevelScene = 5;
inline constexpr std::uint32_t kLogLevelTrace = 31;

/// Sends one message at category 700, level 1. `format` is printf-style wide text of at most 511
/// characters once expanded (a longer one is cut); "%s" takes wide text on every system. Callable from any
/// thread; never fails and never throws; without a logging library nothing happens.
void DebugPrint(const wchar_t* format, ...) noexcept;

/// The same at a category and level of the caller's choice.
void DebugPrintAt(std::uint32_t category, std::uint32_t level, const wchar_t* format, ...) noexcept;

/// Whether the logging library wants messages of this category and level; false without one. Asked before
/// composing text that costs something.
[[nodiscard]] bool IsDebugLevelActive(std::uint32_t category, std::uint32_t level) noexcept;

/// The system's message for the calling thread's last error, at most 100 characters.
void GetLastErrorText(std::wstring& text);

} // namespace scenedetect
