// The formats that scene lists are written in: the one place that knows their names and suffixes.
#pragma once

#include <span>
#include <string>
#include <string_view>

namespace scenedetect {

struct SceneTable;

struct OutputFormat {
    std::string_view name;
    std::span<const std::string_view> suffixes; ///< lower case, with their dots; some have two
    std::string (*write)(const SceneTable&);    ///< HostError when the format can't hold the table
    std::string_view help;                      ///< half a line
    bool needsFile = false;                     ///< the input must have a name that the list can point to
    bool needsRecorded = false;                 ///< the table must tell recording times
};

[[nodiscard]] std::span<const OutputFormat> OutputFormats();
[[nodiscard]] std::string FormatNames(std::string_view separator);

/// nullptr when there is no such format.
[[nodiscard]] const OutputFormat* FormatByName(std::string_view name);
/// The format with the longest suffix that the file's name ends in, whatever the case of its letters; nullptr
/// when there is none.
[[nodiscard]] const OutputFormat* FormatBySuffix(std::string_view path);

/// For the user: one line each of what is wrong and what to do.
[[nodiscard]] std::string UnknownFormatText(std::string_view name);
[[nodiscard]] std::string UnknownSuffixText(std::string_view path);

} // namespace scenedetect
