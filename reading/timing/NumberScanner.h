// Takes a text with numbers apart from its beginning on.
#pragma once

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

namespace scenedetect {

/// What is not there is not taken, so that another form can be tried.
class NumberScanner {
  public:
    explicit NumberScanner(std::string_view text) : m_rest(text) {}

    /// All digits that follow, without a sign, if they are `least` to `most`, which is 18 at the most.
    [[nodiscard]] std::optional<std::string_view> Digits(std::size_t least, std::size_t most) {
        const std::size_t count = std::min(m_rest.find_first_not_of("0123456789"), m_rest.size());
        if (count < least || count > most)
            return std::nullopt;
        return Take(count);
    }
    [[nodiscard]] std::optional<std::int64_t> Number(std::size_t least, std::size_t most) {
        const auto digits = Digits(least, most);
        std::int64_t number = 0;
        if (!digits ||
            std::from_chars(digits->data(), digits->data() + digits->size(), number).ec != std::errc())
            return std::nullopt;
        return number;
    }
    /// One of these characters; 0 when it is none of them.
    [[nodiscard]] char Mark(std::string_view any) {
        return m_rest.empty() || any.find(m_rest.front()) == any.npos ? '\0' : Take(1).front();
    }
    [[nodiscard]] bool IsAtEnd() const { return m_rest.empty(); }

  private:
    std::string_view Take(std::size_t count) {
        const std::string_view taken = m_rest.substr(0, count);
        m_rest.remove_prefix(count);
        return taken;
    }

    std::string_view m_rest;
};

} // namespace scenedetect
