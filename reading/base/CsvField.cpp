#include "reading/base/CsvField.h"

namespace scenedetect {

std::string CsvField(std::string_view text) {
    if (text.find_first_of(",\"\r\n") == std::string_view::npos)
        return std::string(text);
    std::string field = "\"";
    for (const char letter : text) {
        field += letter;
        if (letter == '"')
            field += letter;
    }
    return field + '"';
}

} // namespace scenedetect
