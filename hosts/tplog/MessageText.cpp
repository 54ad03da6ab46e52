#include "hosts/tplog/MessageText.h"

#include "platform/Text.h"

#include <algorithm>
#include <cstdio>
#include <optional>
#include <string_view>

namespace scenedetect::tplog {
namespace {

constexpr int kLargestWidth = 4096;

enum class Length { Half, Plain, Long, LongLong, LongDouble };

// "%-8.3ld" taken apart.
struct Placeholder {
    std::string flags;
    int width = 0;
    std::optional<int> precision;
    Length length = Length::Plain;
    char conversion = 0;
};

bool IsOneOf(char16_t character, std::u16string_view set) {
    return set.find(character) != std::u16string_view::npos;
}

// A number in the format, or with "*" in the arguments.
int TakeNumber(std::u16string_view& format, std::va_list& arguments) {
    if (format.starts_with(u'*')) {
        format.remove_prefix(1);
        return std::clamp(va_arg(arguments, int), -kLargestWidth, kLargestWidth);
    }
    int number = 0;
    for (; !format.empty() && format[0] >= u'0' && format[0] <= u'9'; format.remove_prefix(1))
        number = std::min(10 * number + (format[0] - u'0'), kLargestWidth);
    return number;
}

Length TakeLength(std::u16string_view& format) {
    Length length = Length::Plain;
    for (; !format.empty() && IsOneOf(format[0], u"hlLjzt"); format.remove_prefix(1)) {
        if (format[0] == u'h')
            length = Length::Half;
        else if (format[0] == u'L')
            length = Length::LongDouble;
        else if (format[0] == u'l' && length != Length::Long)
            length = Length::Long;
        else
            length = Length::LongLong;
    }
    return length;
}

// `format` follows the "%".
Placeholder TakePlaceholder(std::u16string_view& format, std::va_list& arguments) {
    Placeholder placeholder;
    for (; !format.empty() && IsOneOf(format[0], u"-+ #0"); format.remove_prefix(1))
        placeholder.flags += static_cast<char>(format[0]);
    placeholder.width = TakeNumber(format, arguments);
    if (placeholder.width < 0) {
        placeholder.width = -placeholder.width;
        placeholder.flags += '-';
    }
    if (format.starts_with(u'.')) {
        format.remove_prefix(1);
        const int precision = TakeNumber(format, arguments);
        if (precision >= 0)
            placeholder.precision = precision;
    }
    placeholder.length = TakeLength(format);
    if (!format.empty() && format[0] < 0x80) {
        placeholder.conversion = static_cast<char>(format[0]);
        format.remove_prefix(1);
    }
    return placeholder;
}

// One number by the system's own printf.
template <typename Value>
std::u16string FormatNumber(const Placeholder& placeholder, const char* length, Value value) {
    const int precision = placeholder.precision.value_or(-1);
    const std::string format = "%" + placeholder.flags + "*.*" + length + placeholder.conversion;
    const int size = std::snprintf(nullptr, 0, format.c_str(), placeholder.width, precision, value);
    std::string text(static_cast<std::size_t>(std::max(size, 0)) + 1, '\0');
    std::snprintf(text.data(), text.size(), format.c_str(), placeholder.width, precision, value);
    text.pop_back();
    return {text.begin(), text.end()};
}

// The units of a text that ends at its terminator or at the placeholder's precision.
template <typename Unit>
std::basic_string_view<Unit> BoundedText(const Unit* text, std::optional<int> precision) {
    std::size_t length = 0;
    while ((!precision || length < static_cast<std::size_t>(*precision)) && text[length] != 0)
        ++length;
    return {text, length};
}

std::u16string Utf16FromUtf8(std::string_view text) {
    const std::wstring wide = WideFromUtf8(text);
    std::u16string text16(2 * wide.size() + 1, u'\0');
    text16.resize(Utf16FromWide(wide, text16));
    return text16;
}

std::u16string Pad(const Placeholder& placeholder, std::u16string text) {
    const auto width = static_cast<std::size_t>(placeholder.width);
    if (text.size() >= width)
        return text;
    const bool left = placeholder.flags.find('-') != std::string::npos;
    text.insert(left ? text.size() : 0, width - text.size(), u' ');
    return text;
}

std::u16string FormatText(const Placeholder& placeholder, bool narrow, std::va_list& arguments) {
    const void* text = va_arg(arguments, const void*);
    if (!text)
        return Pad(placeholder, u"(null)");
    if (narrow)
        return Pad(placeholder,
                   Utf16FromUtf8(BoundedText(static_cast<const char*>(text), placeholder.precision)));
    return Pad(placeholder,
               std::u16string(BoundedText(static_cast<const char16_t*>(text), placeholder.precision)));
}

// Nothing when the conversion is not known; no argument is taken then.
std::optional<std::u16string> Fill(const Placeholder& placeholder, std::va_list& arguments) {
    const bool isLong = placeholder.length == Length::Long;
    const bool isLongLong = placeholder.length == Length::LongLong;
    const bool isHalf = placeholder.length == Length::Half;
    switch (placeholder.conversion) {
    case '%':
        return u"%";
    case 'd':
    case 'i':
        if (isLongLong)
            return FormatNumber(placeholder, "ll", va_arg(arguments, long long));
        if (isLong)
            return FormatNumber(placeholder, "l", va_arg(arguments, long));
        return FormatNumber(placeholder, isHalf ? "h" : "", va_arg(arguments, int));
    case 'u':
    case 'x':
    case 'X':
    case 'o':
        if (isLongLong)
            return FormatNumber(placeholder, "ll", va_arg(arguments, unsigned long long));
        if (isLong)
            return FormatNumber(placeholder, "l", va_arg(arguments, unsigned long));
        return FormatNumber(placeholder, isHalf ? "h" : "", va_arg(arguments, unsigned));
    case 'f':
    case 'F':
    case 'e':
    case 'E':
    case 'g':
    case 'G':
        if (placeholder.length == Length::LongDouble)
            return FormatNumber(placeholder, "L", va_arg(arguments, long double));
        return FormatNumber(placeholder, "", va_arg(arguments, double));
    case 's':
        return FormatText(placeholder, isHalf, arguments);
    case 'S':
        return FormatText(placeholder, !isLong, arguments);
    case 'c':
    case 'C':
        return Pad(placeholder, std::u16string(1, static_cast<char16_t>(va_arg(arguments, int))));
    default:
        return std::nullopt;
    }
}

} // namespace

std::u16string ExpandText(const char16_t* format) {
    std::u16string text;
    for (; *format; ++format) {
        text += *format;
        if (format[0] == u'%' && format[1] == u'%')
            ++format;
    }
    return text;
}

std::u16string ExpandText(const char16_t* format, std::va_list list) {
    // A copy, since a parameter of this type may be a pointer that cannot be passed on by reference.
    std::va_list arguments;
    va_copy(arguments, list);
    std::u16string text;
    std::u16string_view rest = format;
    while (!rest.empty()) {
        const std::size_t percent = std::min(rest.find(u'%'), rest.size());
        text += rest.substr(0, percent);
        rest.remove_prefix(percent);
        if (rest.empty())
            break;
        const std::u16string_view start = rest;
        rest.remove_prefix(1);
        const Placeholder placeholder = TakePlaceholder(rest, arguments);
        text += Fill(placeholder, arguments)
                    .value_or(std::u16string(start.substr(0, start.size() - rest.size())));
    }
    va_end(arguments);
    return text;
}

std::string MakeLine(std::uint32_t category, std::uint32_t level, std::u16string_view text) {
    if (text.ends_with(u'\n'))
        text.remove_suffix(1);
    std::string line = std::to_string(category) + '/' + std::to_string(level) + ' ' + Utf8FromUtf16(text);
    std::replace_if(
        line.begin(), line.end(), [](char c) { return c == '\n' || c == '\r'; }, ' ');
    return line + '\n';
}

} // namespace scenedetect::tplog
