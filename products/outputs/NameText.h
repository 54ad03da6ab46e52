// Names and paths of files in the forms that lists for other programs need.
#pragma once

#include <string>

namespace scenedetect {

/// The name as UTF-8 that any text format takes: what is no character becomes U+FFFD, control characters
/// become spaces.
[[nodiscard]] std::string PlainName(const std::string& name);

/// The last part of a path, as a plain name.
[[nodiscard]] std::string FileName(const std::string& path);

/// The file URL of a path, absolute and percent-encoded byte by byte; what is a URL already as it is; empty
/// for the standard input.
[[nodiscard]] std::string MediaUrl(const std::string& path);

/// The URL by which the file `from` refers to another, as long as the two are moved together; absolute where
/// they are on different drives.
[[nodiscard]] std::string RelativeUrl(const std::string& path, const std::string& from);

} // namespace scenedetect
