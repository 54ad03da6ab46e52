// Files that are not whole yet, for the signal that ends the program in the middle of them.
#pragma once

#include <cstddef>
#include <string>

namespace scenedetect {

/// Notes a file as long as the object lives. Any thread. A few dozen at a time; of more, and of paths
/// longer than 4095 bytes, nothing is noted.
class UnfinishedFile {
  public:
    explicit UnfinishedFile(const std::string& path);
    ~UnfinishedFile();
    UnfinishedFile(const UnfinishedFile&) = delete;
    UnfinishedFile& operator=(const UnfinishedFile&) = delete;

    /// Removes those that are noted. Made for signal handlers.
    static void RemoveAll() noexcept;

  private:
    std::size_t m_slot = 0;
};

} // namespace scenedetect
