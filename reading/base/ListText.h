// Lists as text: "votes, cells".
#pragma once

#include <string>
#include <string_view>

namespace scenedetect {

/// Appends `item`, after `separator` unless it is the first.
inline void AppendToList(std::string& list, std::string_view separator, std::string_view item) {
    if (!list.empty())
        list += separator;
    list += item;
}

} // namespace scenedetect
