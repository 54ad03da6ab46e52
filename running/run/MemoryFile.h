// A file without a place on disk, for what writes to files by name.
#pragma once

#include <string>

namespace scenedetect {

/// Is gone with the object. One thread at a time.
class MemoryFile {
  public:
    /// HostError when the system gives none.
    MemoryFile();
    ~MemoryFile();
    MemoryFile(const MemoryFile&) = delete;
    MemoryFile& operator=(const MemoryFile&) = delete;

    /// By which this process can open it.
    [[nodiscard]] std::string Path() const;

  private:
    const int m_descriptor;
};

} // namespace scenedetect
