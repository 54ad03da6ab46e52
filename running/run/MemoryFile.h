// A file without a lasting place on disk, for what writes to files by name.
#pragma once

#include <string>

namespace scenedetect {

/// In memory where the system has such files, else among temporary ones. Is gone with the object. One thread
/// at a time.
class MemoryFile {
  public:
    /// HostError when the system gives none.
    MemoryFile();
    ~MemoryFile();
    MemoryFile(const MemoryFile&) = delete;
    MemoryFile& operator=(const MemoryFile&) = delete;

    /// By which this process can open it.
    [[nodiscard]] const std::string& Path() const { return m_path; }

  private:
    int m_descriptor = -1;
    std::string m_path;
};

} // namespace scenedetect
