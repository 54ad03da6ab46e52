// Names that every file system accepts, and where the program itself lies.
#pragma once

#include <string>
#include <string_view>

namespace scenedetect {

/// Removes white space at both ends and replaces the characters that `ContainsInvalidFileNameChar` looks for.
/// True when one was replaced.
bool MakeValidFileName(std::wstring& text);

/// Whether there is one of : / | ? * " and backslash. Deliberate: < and > do not count.
[[nodiscard]] bool ContainsInvalidFileNameChar(std::wstring_view text);

/// Replaces each character of `text` that occurs in `from` by the one at the same place in `to`, which is at
/// least as long. True when one was replaced.
bool ReplaceChars(std::wstring& text, std::wstring_view from, std::wstring_view to);

/// The full path of the program of this process, whatever module asks; cut to 259 characters, empty when the
/// system does not tell.
void GetHostExecutablePath(std::wstring& text);

} // namespace scenedetect
