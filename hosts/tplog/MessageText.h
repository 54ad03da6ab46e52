// From a 16-bit format to the line that is printed.
#pragma once

#include <cstdarg>
#include <cstdint>
#include <string>

namespace scenedetect::tplog {

/// The format without arguments: "%%" becomes "%", every other placeholder stays.
[[nodiscard]] std::u16string ExpandText(const char16_t* format);

/// The format with its placeholders filled; those it does not know ("%n" among them) stay.
[[nodiscard]] std::u16string ExpandText(const char16_t* format, std::va_list arguments);

/// "category/level text" as one line of UTF-8: a final line end is supplied when there is none, a line end
/// inside the text becomes a space.
[[nodiscard]] std::string MakeLine(std::uint32_t category, std::uint32_t level, std::u16string_view text);

} // namespace scenedetect::tplog
