// A folder of the test's own, removed with everything in it.
#pragma once

#include "platform/Text.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

namespace scenedetect::testing_support {

class TempFolder {
  public:
    TempFolder() {
        static std::atomic<unsigned> counter = 0;
        const auto ticks = std::chrono::steady_clock::now().time_since_epoch().count();
        m_path = std::filesystem::temp_directory_path() /
                 ("scenedetect-" + std::to_string(ticks) + "-" + std::to_string(counter++));
        std::filesystem::create_directories(m_path);
    }
    ~TempFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(m_path, ignored);
    }
    TempFolder(const TempFolder&) = delete;
    TempFolder& operator=(const TempFolder&) = delete;

    [[nodiscard]] std::filesystem::path operator/(const std::filesystem::path& name) const {
        return m_path / name;
    }

  private:
    std::filesystem::path m_path;
};

/// The path as wide text, whatever the locale.
inline std::wstring Wide(const std::filesystem::path& path) {
    const std::u8string text = path.u8string();
    return WideFromUtf8({reinterpret_cast<const char*>(text.data()), text.size()});
}

inline std::string ReadWhole(const std::filesystem::path& path) {
    std::ostringstream bytes; // copies at the speed of the library, however tests are compiled
    bytes << std::ifstream(path, std::ios::binary).rdbuf();
    return bytes.str();
}

/// Names of all that is there, hidden ones too.
inline std::vector<std::string> FilesIn(const std::filesystem::path& folder) {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder))
        names.push_back(entry.path().filename().string());
    std::ranges::sort(names);
    return names;
}

} // namespace scenedetect::testing_support
