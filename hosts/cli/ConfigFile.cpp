#include "hosts/cli/ConfigFile.h"

#include "reading/base/FilePath.h"
#include "reading/base/HostError.h"
#include "reading/readers/StreamInput.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <sstream>
#include <system_error>

namespace scenedetect {
namespace {

namespace fs = std::filesystem;

// The library's reader sees comments in quoted values, too.
std::string WithoutComment(const std::string& line) {
    char quote = '\0';
    for (std::size_t i = 0; i < line.size(); ++i) {
        if (quote == '\0' && (line[i] == '"' || line[i] == '\''))
            quote = line[i];
        else if (line[i] == quote)
            quote = '\0';
        else if (line[i] == '#' && quote == '\0')
            return line.substr(0, i);
    }
    return line;
}

bool IsOpenList(const std::string& text) {
    const auto begin = text.find_first_not_of(" \t", text.find('=') + 1);
    return text.find('=') != std::string::npos && begin != std::string::npos && text[begin] == '[' &&
           text.find_last_of(']') == std::string::npos;
}

// Line by line, since the library's reader does not tell where it found something.
class Reader {
  public:
    explicit Reader(const std::string& path) : m_path(path), m_stream(ReadTextFile(path)) {
        m_parser.comment('\0');
    }

    std::vector<Setting> Read() {
        while (GetLine()) {
            const int line = m_line;
            std::string text = m_text;
            while (IsOpenList(text) && GetLine())
                text += ' ' + m_text;
            std::istringstream one(text);
            for (CLI::ConfigItem& item : m_parser.from_config(one))
                Add(item, line);
        }
        return m_settings;
    }

  private:
    bool GetLine() {
        if (!std::getline(m_stream, m_text))
            return false;
        ++m_line;
        m_text = WithoutComment(m_text);
        return true;
    }

    void Add(CLI::ConfigItem& item, int line) {
        const auto wrong = [&](const std::string& what) {
            return HostError(m_path + ':' + std::to_string(line) + ": " + what);
        };
        if (!item.parents.empty())
            throw wrong("there are no sections: [" + item.parents.front() + ']');
        if (std::any_of(m_settings.begin(), m_settings.end(),
                        [&](const Setting& each) { return each.name == item.name; }))
            throw wrong(item.name + " is set twice");
        m_settings.push_back({item.name, std::move(item.inputs), m_path, line});
    }

    const std::string m_path;
    std::istringstream m_stream;
    CLI::ConfigBase m_parser;
    std::string m_text;
    int m_line = 0;
    std::vector<Setting> m_settings;
};

} // namespace

std::string UserConfigFile() {
    const fs::path folder = UserConfigFolder();
    const fs::path file = folder / "kxscenes/kxscenes.conf";
    std::error_code none;
    return folder.is_absolute() && fs::exists(file, none) ? NameOfPath(file) : "";
}

std::vector<Setting> ReadConfigFile(const std::string& path) {
    return Reader(path).Read();
}

} // namespace scenedetect
