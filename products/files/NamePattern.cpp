#include "products/files/NamePattern.h"

#include "reading/base/FilePath.h"
#include "reading/base/HostError.h"
#include "reading/base/ListText.h"
#include "support/FileName.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <stdexcept>

namespace scenedetect {
namespace {

constexpr std::size_t kLongestName = 255; // bytes; what all usual file systems allow

struct Field {
    std::string_view name;
    std::string (*value)(const NameFields& fields);
    std::string_view missing; // stands for an empty value
};

std::string Padded(const char* format, std::int64_t number) {
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), format, static_cast<long long>(number));
    return text.data();
}

constexpr std::array kFields = {
    Field{"name", [](const NameFields& fields) { return fields.name; }, "unnamed"},
    Field{"scene", [](const NameFields& fields) { return Padded("%04lld", fields.scene); }, ""},
    Field{"method", [](const NameFields& fields) { return fields.method; }, "any"},
    Field{"frame", [](const NameFields& fields) { return Padded("%07lld", fields.frame); }, ""},
    Field{"timecode", [](const NameFields& fields) { return fields.timecode; }, "no-timecode"},
    Field{"date", [](const NameFields& fields) { return fields.date; }, "undated"},
    Field{"time", [](const NameFields& fields) { return fields.time; }, "untimed"},
    Field{"aspect", [](const NameFields& fields) { return fields.aspect; }, "no-aspect"},
    Field{"audio", [](const NameFields& fields) { return fields.audio; }, "no-audio"},
    Field{"title", [](const NameFields& fields) { return fields.title; }, "untitled"}};

const Field* FindField(std::string_view name) {
    const auto* const found = std::ranges::find(kFields, name, &Field::name);
    return found != kFields.end() ? found : nullptr;
}

// Names need not be UTF-8: each byte goes through as a character of its own, those that are not ASCII as ones
// that mean nothing to anybody.
constexpr wchar_t kPrivateUse = 0xF000;

std::string CleanValue(const std::string& value, std::string_view missing) {
    std::wstring wide;
    for (const char character : value) {
        const auto byte = static_cast<unsigned char>(character);
        wide += static_cast<wchar_t>(byte < 0x80 ? byte : kPrivateUse + byte);
    }
    ReplaceChars(wide, L";", L"-"); // of drop-frame timecode
    MakeValidFileName(wide);
    std::string clean;
    for (const wchar_t character : wide)
        if (character != L'\0')
            clean += static_cast<char>(character & 0xFF);
    return clean.empty() ? std::string(missing) : clean;
}

std::string UnknownField(std::string_view name) {
    std::string fields;
    for (const Field& field : kFields)
        AppendToList(fields, ", ", "{" + std::string(field.name) + "}");
    return "{" + std::string(name) + "} is not a field; there are " + fields;
}

} // namespace

// Returns what is wrong, if anything.
std::string NamePattern::Read(std::string_view text, std::vector<Component>& components) {
    components.emplace_back();
    const auto addText = [&](char character) {
        Component& component = components.back();
        if (component.empty() || component.back().isField)
            component.push_back({false, ""});
        component.back().text += character;
    };
    while (!text.empty()) {
        const char first = text.front();
        const bool isBrace = first == '{' || first == '}';
        if (first == '/') {
            components.emplace_back();
            text.remove_prefix(1);
        } else if (!isBrace || (text.size() > 1 && text[1] == first)) {
            addText(first);
            text.remove_prefix(isBrace ? 2 : 1);
        } else if (first == '}') {
            return "} without its {; the brace itself is written }}";
        } else {
            const std::size_t end = text.find_first_of("{}", 1);
            if (end == std::string_view::npos || text[end] != '}')
                return "{ without its }; the brace itself is written {{";
            const std::string_view name = text.substr(1, end - 1);
            if (!FindField(name))
                return UnknownField(name);
            components.back().push_back({true, std::string(name)});
            text.remove_prefix(end + 1);
        }
    }
    return components.back().empty() ? "a file's name is missing at its end" : "";
}

NamePattern::NamePattern(const std::string& text) {
    if (const std::string error = Read(text, m_components); !error.empty())
        throw std::invalid_argument(error);
}

std::string NamePattern::ErrorIn(const std::string& text) {
    std::vector<Component> components;
    const std::string error = Read(text, components);
    return error.empty() ? "" : "pattern \"" + text + "\": " + error;
}

std::string NamePattern::Expand(const Component& component, const NameFields& fields,
                                std::string_view suffix) {
    std::string text;
    for (const Piece& piece : component) {
        const Field* const field = piece.isField ? FindField(piece.text) : nullptr;
        text += field ? CleanValue(field->value(fields), field->missing) : piece.text;
    }
    const bool hasFields = std::ranges::any_of(component, &Piece::isField);
    if (hasFields && suffix.empty() && (text == "." || text == ".."))
        std::ranges::fill(text, '_');
    text += suffix;
    if (text.size() > kLongestName)
        throw HostError(text + ": cannot be a file's name, which has " + std::to_string(kLongestName) +
                        " bytes at the most; choose a shorter one");
    return text;
}

std::string NamePattern::Expand(const NameFields& fields, std::string_view suffix) const {
    std::string path;
    for (const Component& component : m_components) {
        const bool isLast = &component == &m_components.back();
        path += isLast ? Expand(component, fields, suffix) : Expand(component, fields, "") + "/";
    }
    return path;
}

std::string NameOfInput(const std::string& input) {
    return input == "-" ? "stdin" : NameOfPath(FilePath(input).stem());
}

} // namespace scenedetect
