#include "platform/CriticalSection.h"

#include "platform/HResultError.h"

#include <windows.h>

#include <new>

namespace scenedetect {
namespace {

CRITICAL_SECTION* SectionIn(std::byte* storage) {
    return std::launder(reinterpret_cast<CRITICAL_SECTION*>(storage));
}

} // namespace

CriticalSection::CriticalSection() {
    static_assert(sizeof(CRITICAL_SECTION) <= sizeof(m_storage) && alignof(CRITICAL_SECTION) <= kAlignment);
    if (!InitializeCriticalSectionAndSpinCount(new (m_storage) CRITICAL_SECTION, 0))
        throw HResultError(HRESULT_FROM_WIN32(GetLastError()));
}

CriticalSection::~CriticalSection() {
    DeleteCriticalSection(SectionIn(m_storage));
}

void CriticalSection::lock() noexcept {
    EnterCriticalSection(SectionIn(m_storage));
}

void CriticalSection::unlock() noexcept {
    LeaveCriticalSection(SectionIn(m_storage));
}

} // namespace scenedetect
