#include "products/outputs/XmlText.h"

#include <sstream>

namespace scenedetect {

pugi::xml_document NewXml(const std::string& doctype) {
    pugi::xml_document document;
    pugi::xml_node declaration = document.append_child(pugi::node_declaration);
    declaration.append_attribute("version") = "1.0";
    declaration.append_attribute("encoding") = "UTF-8";
    if (!doctype.empty())
        document.append_child(pugi::node_doctype).set_value(doctype.c_str());
    return document;
}

std::string TextOf(const pugi::xml_document& document) {
    std::ostringstream text;
    document.save(text, "  ");
    return text.str();
}

void AppendText(pugi::xml_node parent, const char* name, const std::string& text) {
    parent.append_child(name).text().set(text.c_str());
}

void AppendText(pugi::xml_node parent, const char* name, std::int64_t number) {
    AppendText(parent, name, std::to_string(number));
}

} // namespace scenedetect
