// The recursive lock of filters, pins and allocators, and its scoped holder.
#pragma once

#include "platform/CriticalSection.h"

/// A recursive lock. Also a standard Lockable, so that condition variables can wait with it.
class CCritSec {
  public:
    void Lock() { m_section.lock(); }
    void Unlock() { m_section.unlock(); }
    void lock() { m_section.lock(); }
    void unlock() { m_section.unlock(); }

  private:
    scenedetect::CriticalSection m_section;
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
