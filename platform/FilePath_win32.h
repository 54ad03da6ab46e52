// Paths as the system takes them, of any length.
#pragma once

#include <string>

namespace scenedetect {

/// The whole path, without "." and "..". Raises std::bad_alloc.
[[nodiscard]] std::wstring FullPath(const std::wstring& path);

/// Most of the system's functions take paths of 260 characters at the most, unless they are whole and marked:
/// this one, marked where it is long. Raises std::bad_alloc.
[[nodiscard]] std::wstring SystemPath(const std::wstring& path);

} // namespace scenedetect
