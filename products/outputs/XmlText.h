// XML as the lists write it.
#pragma once

#include <cstdint>
#include <list>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace scenedetect {

/// With the characters that mark XML and HTML up written as entities.
[[nodiscard]] std::string EscapedXml(const std::string& text);

/// An element with its attributes and either a text or elements. Texts are UTF-8 without control characters
/// (PlainName), and are escaped when they are written.
class XmlElement {
  public:
    explicit XmlElement(std::string name) : m_name(std::move(name)) {}

    void Set(const char* attribute, std::string value) {
        m_attributes.emplace_back(attribute, std::move(value));
    }
    /// A new last element in this one, which stays where it is.
    XmlElement& Append(const char* name) { return m_elements.emplace_back(name); }
    /// Appends <name>text</name>.
    void AppendText(const char* name, std::string text) { Append(name).m_text = std::move(text); }
    void AppendText(const char* name, std::int64_t number) { AppendText(name, std::to_string(number)); }

    /// The document with this element as its root; with a type where that `hasDoctype`.
    [[nodiscard]] std::string Document(bool hasDoctype) const;

  private:
    void WriteTo(std::string& document, const std::string& indent) const;

    const std::string m_name;
    std::vector<std::pair<const char*, std::string>> m_attributes;
    std::optional<std::string> m_text;
    std::list<XmlElement> m_elements;
};

} // namespace scenedetect
