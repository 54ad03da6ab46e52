#include "fuzz/MemoryFile.h"

#include "fuzz/Input.h"

#include <sys/mman.h>
#include <unistd.h>

namespace scenedetect::fuzz {

MemoryFile::MemoryFile(const std::uint8_t* data, std::size_t size)
    : m_descriptor(memfd_create("input", MFD_CLOEXEC)) {
    Require(m_descriptor != -1 && write(m_descriptor, data, size) == static_cast<ssize_t>(size));
    m_path = L"/proc/self/fd/" + std::to_wstring(m_descriptor);
}

MemoryFile::~MemoryFile() {
    close(m_descriptor);
}

} // namespace scenedetect::fuzz
