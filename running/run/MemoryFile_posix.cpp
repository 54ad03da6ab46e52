#include "running/run/MemoryFile.h"

#include "reading/base/HostError.h"

#include <cerrno>
#include <sys/mman.h>
#include <system_error>
#include <unistd.h>

namespace scenedetect {

MemoryFile::MemoryFile() : m_descriptor(memfd_create("kxscenes", MFD_CLOEXEC)) {
    if (m_descriptor == -1)
        throw HostError("no file in memory: " + std::generic_category().message(errno));
    m_path = "/proc/self/fd/" + std::to_string(m_descriptor);
}

MemoryFile::~MemoryFile() {
    close(m_descriptor);
}

} // namespace scenedetect
