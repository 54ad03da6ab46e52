#include "hosts/tplog/LevelRules.h"

#include <charconv>
#include <optional>

namespace scenedetect::tplog {
namespace {

std::optional<std::uint32_t> ReadNumber(std::string_view text) {
    std::uint32_t number = 0;
    const char* end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number);
    return error == std::errc() && stop == end ? std::optional(number) : std::nullopt;
}

} // namespace

bool LevelRules::ReadItem(std::string_view item) {
    const std::size_t colon = item.find(':');
    const auto level = ReadNumber(item.substr(colon == std::string_view::npos ? 0 : colon + 1));
    if (!level)
        return false;
    if (colon == std::string_view::npos) {
        m_highestLevelOfOthers = *level;
        return true;
    }
    const auto category = ReadNumber(item.substr(0, colon));
    if (!category || m_count == m_rules.size())
        return false;
    m_rules[m_count++] = {*category, *level};
    return true;
}

bool LevelRules::Read(std::string_view list) {
    bool readable = true;
    while (!list.empty()) {
        const std::size_t comma = list.find(',');
        readable = ReadItem(list.substr(0, comma)) && readable;
        list.remove_prefix(comma == std::string_view::npos ? list.size() : comma + 1);
    }
    return readable;
}

bool LevelRules::Wants(std::uint32_t category, std::uint32_t level) const {
    for (std::size_t i = 0; i < m_count; ++i) {
        if (m_rules[i].category == category)
            return level <= m_rules[i].highestLevel;
    }
    return level <= m_highestLevelOfOthers;
}

} // namespace scenedetect::tplog
