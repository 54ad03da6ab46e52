#include "products/outputs/XmlText.h"

namespace scenedetect {

std::string EscapedXml(const std::string& text) {
    std::string escaped;
    for (const char each : text)
        switch (each) {
        case '&':
            escaped += "&amp;";
            break;
        case '<':
            escaped += "&lt;";
            break;
        case '>':
            escaped += "&gt;";
            break;
        case '"':
            escaped += "&quot;";
            break;
        default:
            escaped += each;
        }
    return escaped;
}

std::string XmlElement::Document(bool hasDoctype) const {
    std::string document = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";
    if (hasDoctype)
        document += "<!DOCTYPE " + m_name + ">\n";
    WriteTo(document, "");
    return document;
}

void XmlElement::WriteTo(std::string& document, const std::string& indent) const {
    document += indent + '<' + m_name;
    for (const auto& [name, value] : m_attributes)
        document += ' ' + std::string(name) + "=\"" + EscapedXml(value) + '"';
    if (!m_text && m_elements.empty()) {
        document += " />\n";
        return;
    }
    document += '>' + EscapedXml(m_text.value_or("")) + (m_elements.empty() ? "" : "\n");
    for (const XmlElement& each : m_elements)
        each.WriteTo(document, indent + "  ");
    document += (m_elements.empty() ? "" : indent) + "</" + m_name + ">\n";
}

} // namespace scenedetect
