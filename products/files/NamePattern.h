// File names made from a pattern with fields in braces.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace scenedetect {

/// What the fields of a pattern stand for. Texts may be anything: they are cleaned when a name is made.
struct NameFields {
    std::string name;       ///< of the input, without folder and suffix; its bytes are kept
    std::int64_t scene = 0; ///< counted from 1
    std::string method;
    std::int64_t frame = 0; ///< of the file, from 0
    std::string timecode;   ///< HH:MM:SS:FF or HH:MM:SS;FF; empty when there is none
    std::string date;       ///< YYYY-MM-DD; empty when there is none
    std::string time;       ///< HH:MM:SS; empty when there is none
    std::string aspect{};   ///< "16:9"; empty when it is unknown
    std::string audio{};    ///< "48000 Hz 16 bits 2 channels"; empty when it is unknown
    std::string title{};    ///< of the scene, in a list that is read; empty when there is none
};

/// What {name} stands for: the file's name without its suffix, "stdin" for the standard input.
[[nodiscard]] std::string NameOfInput(const std::string& input);

/// Text with the fields {name}, {scene}, {method}, {frame}, {timecode}, {date}, {time}, {aspect}, {audio} and
/// {title}; {{ and }} stand for braces. Numbers are padded, so that names sort as the scenes do.
class NamePattern {
  public:
    /// std::invalid_argument with ErrorIn's text for a wrong pattern.
    explicit NamePattern(const std::string& text);

    /// What is wrong with a pattern, in one line; empty when nothing is.
    [[nodiscard]] static std::string ErrorIn(const std::string& text);

    /// The name, ending with `suffix`. No value can add a folder or lead to one above. HostError for a name
    /// of more than 255 bytes.
    [[nodiscard]] std::string Expand(const NameFields& fields, std::string_view suffix = "") const;

  private:
    struct Piece {
        bool isField;
        std::string text;
    };
    // Between slashes.
    using Component = std::vector<Piece>;

    [[nodiscard]] static std::string Read(std::string_view text, std::vector<Component>& components);
    [[nodiscard]] static std::string Expand(const Component& component, const NameFields& fields,
                                            std::string_view suffix);

    std::vector<Component> m_components;
};

} // namespace scenedetect
