#include "platform/Text.h"

#include <cstdint>

namespace scenedetect {
namespace {

constexpr char32_t kReplacement = 0xFFFD;
constexpr char32_t kLastCharacter = 0x10FFFF;
constexpr char32_t kFirstBeyond16 = 0x10000;

constexpr bool IsHighSurrogate(char32_t unit) {
    return unit >= 0xD800 && unit <= 0xDBFF;
}
constexpr bool IsLowSurrogate(char32_t unit) {
    return unit >= 0xDC00 && unit <= 0xDFFF;
}

// Takes the next character off units of 16 or 32 bits. A surrogate pair counts as one character in either,
// since 16-bit text is often widened unit by unit.
template <typename Unit>
char32_t TakeCharacter(std::basic_string_view<Unit>& text) {
    const auto first = static_cast<char32_t>(text.front());
    text.remove_prefix(1);
    if (IsHighSurrogate(first) && !text.empty() && IsLowSurrogate(static_cast<char32_t>(text.front()))) {
        const auto second = static_cast<char32_t>(text.front());
        text.remove_prefix(1);
        return kFirstBeyond16 + ((first - 0xD800) << 10) + (second - 0xDC00);
    }
    const bool valid = first <= kLastCharacter && !IsHighSurrogate(first) && !IsLowSurrogate(first);
    return valid ? first : kReplacement;
}

char32_t TakeCharacter(std::string_view& text) {
    const auto lead = static_cast<std::uint8_t>(text.front());
    text.remove_prefix(1);
    if (lead < 0x80)
        return lead;
    // The length of the sequence, and the least character that needs so many bytes.
    int following = 0;
    char32_t least = 0;
    char32_t character = 0;
    if ((lead & 0xE0) == 0xC0) {
        following = 1, least = 0x80, character = lead & 0x1Fu;
    } else if ((lead & 0xF0) == 0xE0) {
        following = 2, least = 0x800, character = lead & 0x0Fu;
    } else if ((lead & 0xF8) == 0xF0) {
        following = 3, least = kFirstBeyond16, character = lead & 0x07u;
    } else {
        return kReplacement;
    }
    for (; following > 0; --following) {
        if (text.empty() || (static_cast<std::uint8_t>(text.front()) & 0xC0) != 0x80)
            return kReplacement;
        character = (character << 6) | (static_cast<std::uint8_t>(text.front()) & 0x3Fu);
        text.remove_prefix(1);
    }
    const bool valid = character >= least && character <= kLastCharacter && !IsHighSurrogate(character) &&
                       !IsLowSurrogate(character);
    return valid ? character : kReplacement;
}

void Append(std::string& target, char32_t character) {
    const auto put = [&target](char32_t byte) { target.push_back(static_cast<char>(byte)); };
    const auto putFollowing = [&](int shift) { put(0x80 | ((character >> shift) & 0x3F)); };
    if (character < 0x80) {
        put(character);
    } else if (character < 0x800) {
        put(0xC0 | (character >> 6));
        putFollowing(0);
    } else if (character < kFirstBeyond16) {
        put(0xE0 | (character >> 12));
        putFollowing(6);
        putFollowing(0);
    } else {
        put(0xF0 | (character >> 18));
        putFollowing(12);
        putFollowing(6);
        putFollowing(0);
    }
}

// One or two units of UTF-16; returns how many.
std::size_t Encode16(char32_t character, char16_t (&units)[2]) {
    if (character < kFirstBeyond16) {
        units[0] = static_cast<char16_t>(character);
        return 1;
    }
    units[0] = static_cast<char16_t>(0xD800 + ((character - kFirstBeyond16) >> 10));
    units[1] = static_cast<char16_t>(0xDC00 + ((character - kFirstBeyond16) & 0x3FF));
    return 2;
}

void Append(std::wstring& target, char32_t character) {
    if constexpr (sizeof(wchar_t) >= sizeof(char32_t)) {
        target.push_back(static_cast<wchar_t>(character));
    } else {
        char16_t units[2];
        const std::size_t count = Encode16(character, units);
        target.append(units, units + count);
    }
}

template <typename Target, typename Unit>
Target Convert(std::basic_string_view<Unit> text) {
    Target target;
    target.reserve(text.size());
    while (!text.empty())
        Append(target, TakeCharacter(text));
    return target;
}

} // namespace

std::string Utf8FromWide(std::wstring_view text) {
    return Convert<std::string>(text);
}

std::string Utf8FromUtf16(std::u16string_view text) {
    return Convert<std::string>(text);
}

std::wstring WideFromUtf8(std::string_view text) {
    return Convert<std::wstring>(text);
}

std::size_t Utf16FromWide(std::wstring_view text, std::span<char16_t> target) noexcept {
    std::size_t length = 0;
    while (!text.empty()) {
        char16_t units[2];
        const std::size_t count = Encode16(TakeCharacter(text), units);
        if (length + count >= target.size())
            break;
        for (std::size_t i = 0; i < count; ++i)
            target[length++] = units[i];
    }
    target[length] = 0;
    return length;
}

} // namespace scenedetect
