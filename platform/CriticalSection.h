// The system's recursive lock, as the scene lock and the base classes use it.
#pragma once

#include <cstddef>

namespace scenedetect {

/// A lock that its owning thread may take again; released when unlocked as often. For std::lock_guard.
class CriticalSection {
  public:
    /// Raises HResultError, made from the system's error, when the system refuses.
    CriticalSection();
    ~CriticalSection();
    CriticalSection(const CriticalSection&) = delete;
    CriticalSection& operator=(const CriticalSection&) = delete;

    void lock() noexcept;
    void unlock() noexcept;

  private:
    // Room for the system's own object, so that its header stays out of this one. The alignment is a number:
    // that of std::max_align_t depends, on 32 bits, on the headers that were included before.
    static constexpr std::size_t kAlignment = 16;
    alignas(kAlignment) std::byte m_storage[64];
};

} // namespace scenedetect
