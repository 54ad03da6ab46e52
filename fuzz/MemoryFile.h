// A file with the fuzz target's input, for code that opens files.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace scenedetect::fuzz {

/// Exists as long as the object. Ends the run when it cannot be made.
class MemoryFile {
  public:
    MemoryFile(const std::uint8_t* data, std::size_t size);
    ~MemoryFile();
    MemoryFile(const MemoryFile&) = delete;
    MemoryFile& operator=(const MemoryFile&) = delete;

    [[nodiscard]] const std::wstring& Path() const { return m_path; }

  private:
    std::wstring m_path;
    int m_descriptor = -1;
};

} // namespace scenedetect::fuzz
