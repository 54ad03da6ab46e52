// XML as the lists write it.
#pragma once

#include <pugixml.hpp>

#include <cstdint>
#include <string>

namespace scenedetect {

/// With its declaration, UTF-8; empty `doctype`: without one.
[[nodiscard]] pugi::xml_document NewXml(const std::string& doctype);
[[nodiscard]] std::string TextOf(const pugi::xml_document& document);

/// Appends <name>text</name>.
void AppendText(pugi::xml_node parent, const char* name, const std::string& text);
void AppendText(pugi::xml_node parent, const char* name, std::int64_t number);

} // namespace scenedetect
