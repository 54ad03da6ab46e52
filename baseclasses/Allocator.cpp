#include "baseclasses/Allocator.h"

#include <bit>
#include <cstdint>
#include <limits>
#include <mutex>
#include <new>

void CSampleList::Add(CMediaSample* pSample) {
    pSample->m_pNext = m_pHead;
    m_pHead = pSample;
    ++m_count;
}

CMediaSample* CSampleList::RemoveHead() {
    CMediaSample* head = m_pHead;
    if (!head)
        return nullptr;
    m_pHead = head->m_pNext;
    head->m_pNext = nullptr;
    --m_count;
    return head;
}

CBaseAllocator::CBaseAllocator(LPCTSTR pName, LPUNKNOWN pUnk, HRESULT*) : CUnknown(pName, pUnk) {}

STDMETHODIMP CBaseAllocator::NonDelegatingQueryInterface(REFIID riid, void** ppv) {
    if (riid == IID_IMemAllocator)
        return GetInterface(static_cast<IMemAllocator*>(this), ppv);
    return CUnknown::NonDelegatingQueryInterface(riid, ppv);
}

STDMETHODIMP CBaseAllocator::SetProperties(ALLOCATOR_PROPERTIES* pRequest, ALLOCATOR_PROPERTIES* pActual) {
    if (!pRequest || !pActual)
        return E_POINTER;
    if (pRequest->cBuffers < 0 || pRequest->cbBuffer < 0 || pRequest->cbPrefix < 0)
        return E_INVALIDARG;
    if (pRequest->cbAlign <= 0 || !std::has_single_bit(static_cast<ULONG>(pRequest->cbAlign)))
        return VFW_E_BADALIGN;
    CAutoLock lock(this);
    if (m_bCommitted)
        return VFW_E_ALREADY_COMMITTED;
    if (m_lFree.GetCount() < m_lAllocated)
        return VFW_E_BUFFERS_OUTSTANDING;
    m_lCount = pRequest->cBuffers;
    m_lSize = pRequest->cbBuffer;
    m_lAlignment = pRequest->cbAlign;
    m_lPrefix = pRequest->cbPrefix;
    m_bChanged = true;
    return GetProperties(pActual);
}

STDMETHODIMP CBaseAllocator::GetProperties(ALLOCATOR_PROPERTIES* pProps) {
    if (!pProps)
        return E_POINTER;
    CAutoLock lock(this);
    *pProps = {m_lCount, m_lSize, m_lAlignment, m_lPrefix};
    return S_OK;
}

STDMETHODIMP CBaseAllocator::Commit() {
    CAutoLock lock(this);
    if (m_bCommitted)
        return S_OK;
    if (!m_bDecommitInProgress) {
        const HRESULT hr = Alloc();
        if (FAILED(hr))
            return hr;
        m_bChanged = false;
    }
    m_bDecommitInProgress = false;
    m_bCommitted = true;
    return S_OK;
}

STDMETHODIMP CBaseAllocator::Decommit() {
    CAutoLock lock(this);
    if (!m_bCommitted)
        return S_OK;
    m_bCommitted = false;
    m_bDecommitInProgress = m_lFree.GetCount() < m_lAllocated;
    if (!m_bDecommitInProgress)
        Free();
    m_returned.notify_all();
    return S_OK;
}

STDMETHODIMP CBaseAllocator::GetBuffer(IMediaSample** ppBuffer, REFERENCE_TIME*, REFERENCE_TIME*,
                                       DWORD dwFlags) {
    if (!ppBuffer)
        return E_POINTER;
    *ppBuffer = nullptr;
    std::unique_lock<CCritSec> lock(*this);
    while (m_bCommitted) {
        if (CMediaSample* sample = m_lFree.RemoveHead()) {
            AddRef();
            sample->AddRef();
            *ppBuffer = sample;
            return S_OK;
        }
        if (dwFlags & AM_GBF_NOWAIT)
            return VFW_E_TIMEOUT;
        m_returned.wait(lock);
    }
    return VFW_E_NOT_COMMITTED;
}

STDMETHODIMP CBaseAllocator::ReleaseBuffer(IMediaSample* pBuffer) {
    if (!pBuffer)
        return E_POINTER;
    {
        CAutoLock lock(this);
        m_lFree.Add(static_cast<CMediaSample*>(pBuffer));
        if (m_bDecommitInProgress && m_lFree.GetCount() == m_lAllocated) {
            m_bDecommitInProgress = false;
            Free();
        }
        m_returned.notify_one();
    }
    Release();
    return S_OK;
}

HRESULT CBaseAllocator::Alloc() {
    if (m_lCount <= 0 || m_lSize <= 0)
        return VFW_E_SIZENOTSET;
    return m_bChanged ? S_OK : S_FALSE;
}

CMemAllocator::CMemAllocator(LPCTSTR pName, LPUNKNOWN pUnk, HRESULT* phr)
    : CBaseAllocator(pName, pUnk, phr) {}

CMemAllocator::~CMemAllocator() {
    ReallyFree();
}

STDMETHODIMP CMemAllocator::SetProperties(ALLOCATOR_PROPERTIES* pRequest, ALLOCATOR_PROPERTIES* pActual) {
    if (!pRequest || !pActual)
        return E_POINTER;
    ALLOCATOR_PROPERTIES rounded = *pRequest;
    if (rounded.cbAlign > 0) {
        // Buffer and prefix together fill whole alignment steps, so that all buffers lie as the first does.
        const std::int64_t align = rounded.cbAlign;
        const std::int64_t bytes = std::int64_t{rounded.cbBuffer} + rounded.cbPrefix;
        const std::int64_t size = (bytes + align - 1) / align * align - rounded.cbPrefix;
        if (size > std::numeric_limits<LONG>::max())
            return E_INVALIDARG;
        rounded.cbBuffer = static_cast<LONG>(size);
    }
    return CBaseAllocator::SetProperties(&rounded, pActual);
}

HRESULT CMemAllocator::Alloc() {
    const HRESULT hr = CBaseAllocator::Alloc();
    if (hr != S_OK)
        return FAILED(hr) ? hr : S_OK;
    ReallyFree();

    const std::size_t step = static_cast<std::size_t>(m_lSize) + static_cast<std::size_t>(m_lPrefix);
    const std::size_t count = static_cast<std::size_t>(m_lCount);
    if (step > std::numeric_limits<std::size_t>::max() / count)
        return E_OUTOFMEMORY;
    m_blockAlignment = static_cast<std::size_t>(m_lAlignment);
    m_pBuffer =
        static_cast<BYTE*>(::operator new (step* count, std::align_val_t{m_blockAlignment}, std::nothrow));
    if (!m_pBuffer)
        return E_OUTOFMEMORY;

    HRESULT made = S_OK;
    for (std::size_t n = 0; n < count; ++n) {
        auto* sample = new (std::nothrow)
            CMediaSample(NAME("sample"), this, &made, m_pBuffer + n * step + m_lPrefix, m_lSize);
        if (!sample) {
            ReallyFree();
            return E_OUTOFMEMORY;
        }
        m_lFree.Add(sample);
        ++m_lAllocated;
    }
    return S_OK;
}

void CMemAllocator::Free() {}

void CMemAllocator::ReallyFree() {
    while (CMediaSample* sample = m_lFree.RemoveHead())
        delete sample;
    m_lAllocated = 0;
    ::operator delete (m_pBuffer, std::align_val_t{m_blockAlignment});
    m_pBuffer = nullptr;
}
