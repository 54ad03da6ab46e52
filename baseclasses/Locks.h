// The recursive lock of filters, pins and allocators, and its scoped holder.
#pragma once

#include <mutex>

/// A recursive lock. Also a standard Lockable, so that condition variables can wait with it.
class CCritSec {
  public:
    void Lock() { m_mutex.lock(); }
    void Unlock() { m_mutex.unlock(); }
    void lock() { m_mutex.lock(); }
    void unlock() { m_mutex.unlock(); }

  private:
    std::recursive_mutex m_mutex;
};

/// Holds a lock for the length of a scope.
class CAutoLock {
  public:
    explicit CAutoLock(CCritSec* pLock) : m_pLock(pLock) { m_pLock->Lock(); }
    ~CAutoLock() { m_pLock->Unlock(); }
    CAutoLock(const CAutoLock&) = delete;
    CAutoLock& operator=(const CAutoLock&) = delete;

  private:
    CCritSec* m_pLock;
};
