// The arguments of a Windows program as UTF-8, as text is inside.
#pragma once

#include "platform/Text.h"

#include <string>
#include <vector>

namespace scenedetect {

class WideArguments {
  public:
    WideArguments(int argc, const wchar_t* const* argv) {
        for (int i = 0; i < argc; ++i) {
            std::string& text = m_held.emplace_back(Utf8FromWide(argv[i]));
            // What was typed as "folder\": the system takes \" for a quotation mark, which no name has.
            if (text.ends_with('"'))
                text.back() = '\\';
        }
        for (const std::string& text : m_held)
            m_texts.push_back(text.c_str());
    }

    /// As many as there were; they live as long as the object.
    [[nodiscard]] const char* const* Texts() const { return m_texts.data(); }

  private:
    std::vector<std::string> m_held;
    std::vector<const char*> m_texts;
};

} // namespace scenedetect
