// Allocators: a fixed set of samples handed out and taken back, with or without memory of their own.
#pragma once

#include "baseclasses/Locks.h"
#include "baseclasses/MediaSample.h"
#include "baseclasses/Unknown.h"

#include <condition_variable>
#include <cstddef>

/// A list threaded through the samples themselves. The allocator's lock guards it.
class CSampleList {
  public:
    CMediaSample* Head() const { return m_pHead; }
    int GetCount() const { return m_count; }
    void Add(CMediaSample* pSample);
    /// Null when the list is empty.
    CMediaSample* RemoveHead();

  private:
    CMediaSample* m_pHead = nullptr;
    int m_count = 0;
};

/// Everything but the memory. A derived class makes the samples in Alloc (adding them to m_lFree and counting
/// them in m_lAllocated, under this object's lock) and takes them away in Free or in its destructor.
///
/// Each sample that is out holds a reference to the allocator. A class whose samples point at memory of
/// others overrides ReleaseBuffer to let go of it, and calls the base last. All methods are thread-safe.
class CBaseAllocator : public CUnknown, public IMemAllocator, public CCritSec {
  public:
    CBaseAllocator(LPCTSTR pName, LPUNKNOWN pUnk, HRESULT* phr);

    DECLARE_IUNKNOWN
    STDMETHODIMP NonDelegatingQueryInterface(REFIID riid, void** ppv) override;

    STDMETHODIMP SetProperties(ALLOCATOR_PROPERTIES* pRequest, ALLOCATOR_PROPERTIES* pActual) override;
    STDMETHODIMP GetProperties(ALLOCATOR_PROPERTIES* pProps) override;
    STDMETHODIMP Commit() override;
    /// Returns at once; waiting GetBuffer calls fail. Free is called when the last sample is back.
    STDMETHODIMP Decommit() override;
    /// A free sample with one reference. Waits for one, or with AM_GBF_NOWAIT answers VFW_E_TIMEOUT.
    STDMETHODIMP GetBuffer(IMediaSample** ppBuffer, REFERENCE_TIME* pStartTime, REFERENCE_TIME* pEndTime,
                           DWORD dwFlags) override;
    /// Called by a sample that lost its last reference, never by a user of the allocator.
    STDMETHODIMP ReleaseBuffer(IMediaSample* pBuffer) override;

  protected:
    CSampleList m_lFree;
    LONG m_lCount = 0;
    LONG m_lSize = 0;
    LONG m_lAlignment = 0;
    LONG m_lPrefix = 0;
    LONG m_lAllocated = 0;   ///< samples made, free or out
    bool m_bChanged = false; ///< properties set since the last Alloc
    bool m_bCommitted = false;
    bool m_bDecommitInProgress = false;

    /// Makes the samples. The base checks and answers S_FALSE when those made before still fit,
    /// VFW_E_SIZENOTSET without properties. Called under the lock.
    virtual HRESULT Alloc();
    /// No sample is out any more. Called under the lock.
    virtual void Free() = 0;

  private:
    std::condition_variable_any m_returned;
};

/// The usual allocator: one block of aligned memory, kept from Decommit to the next Commit.
class CMemAllocator : public CBaseAllocator {
  public:
    CMemAllocator(LPCTSTR pName, LPUNKNOWN pUnk, HRESULT* phr);
    ~CMemAllocator() override;

    STDMETHODIMP SetProperties(ALLOCATOR_PROPERTIES* pRequest, ALLOCATOR_PROPERTIES* pActual) override;

  protected:
    HRESULT Alloc() override;
    void Free() override;

  private:
    void ReallyFree();

    BYTE* m_pBuffer = nullptr;
    std::size_t m_blockAlignment = 1;
};
