#include "platform/CriticalSection.h"

#include "platform/HResultError.h"

#include <cerrno>
#include <new>
#include <pthread.h>

namespace scenedetect {
namespace {

pthread_mutex_t* MutexIn(std::byte* storage) {
    return std::launder(reinterpret_cast<pthread_mutex_t*>(storage));
}

void RaiseIf(int error) {
    if (error != 0)
        throw HResultError(error == ENOMEM ? E_OUTOFMEMORY : E_FAIL);
}

} // namespace

CriticalSection::CriticalSection() {
    static_assert(sizeof(pthread_mutex_t) <= sizeof(m_storage) && alignof(pthread_mutex_t) <= kAlignment);
    pthread_mutexattr_t attributes;
    RaiseIf(pthread_mutexattr_init(&attributes));
    pthread_mutexattr_settype(&attributes, PTHREAD_MUTEX_RECURSIVE);
    const int error = pthread_mutex_init(new (m_storage) pthread_mutex_t, &attributes);
    pthread_mutexattr_destroy(&attributes);
    RaiseIf(error);
}

CriticalSection::~CriticalSection() {
    pthread_mutex_destroy(MutexIn(m_storage));
}

void CriticalSection::lock() noexcept {
    pthread_mutex_lock(MutexIn(m_storage));
}

void CriticalSection::unlock() noexcept {
    pthread_mutex_unlock(MutexIn(m_storage));
}

} // namespace scenedetect
