// Conversions between the text forms at the system's edges: wide, 16-bit and UTF-8, whatever the locale.
#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>

namespace scenedetect {

// Wide text is UTF-32 or UTF-16 by the size of wchar_t. Whatever is not a character (a lone surrogate, a
// number beyond U+10FFFF, a broken or overlong UTF-8 sequence) becomes U+FFFD. These raise std::bad_alloc.
[[nodiscard]] std::string Utf8FromWide(std::wstring_view text);
[[nodiscard]] std::string Utf8FromUtf16(std::u16string_view text);
[[nodiscard]] std::wstring WideFromUtf8(std::string_view text);

/// Converts into `target` as many whole characters as leave room for a terminator, which is always stored,
/// and returns how many units precede it. `target` must not be empty. Allocates nothing.
std::size_t Utf16FromWide(std::wstring_view text, std::span<char16_t> target) noexcept;

} // namespace scenedetect
