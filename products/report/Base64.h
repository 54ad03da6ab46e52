// Bytes as text that a page can hold.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

namespace scenedetect {

/// With padding, on one line.
[[nodiscard]] inline std::string Base64(std::span<const std::uint8_t> bytes) {
    constexpr char kDigits[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string text;
    text.reserve((bytes.size() + 2) / 3 * 4);
    for (std::size_t i = 0; i < bytes.size(); i += 3) {
        const std::size_t count = bytes.size() - i < 3 ? bytes.size() - i : 3;
        std::uint32_t three = 0;
        for (std::size_t j = 0; j < 3; ++j)
            three = three << 8 | (j < count ? bytes[i + j] : 0U);
        for (std::size_t j = 0; j < 4; ++j)
            text += j <= count ? kDigits[three >> (18 - 6 * j) & 63] : '=';
    }
    return text;
}

} // namespace scenedetect
