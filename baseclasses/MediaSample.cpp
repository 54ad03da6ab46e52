#include "baseclasses/MediaSample.h"

#include "baseclasses/Allocator.h"
#include "baseclasses/ComRef.h"
#include "baseclasses/MediaType.h"

#include <algorithm>
#include <cstddef>
#include <cstring>

CMediaSample::CMediaSample(LPCTSTR, CBaseAllocator* pAllocator, HRESULT*, BYTE* pBuffer, LONG length)
    : m_pAllocator(pAllocator), m_pBuffer(pBuffer), m_cbBuffer(length), m_lActual(length) {}

CMediaSample::~CMediaSample() {
    DeleteMediaType(m_pMediaType);
}

STDMETHODIMP CMediaSample::QueryInterface(REFIID riid, void** ppv) {
    if (!ppv)
        return E_POINTER;
    if (riid == IID_IMediaSample || riid == IID_IMediaSample2 || riid == IID_IUnknown)
        return GetInterface(static_cast<IMediaSample2*>(this), ppv);
    *ppv = nullptr;
    return E_NOINTERFACE;
}

STDMETHODIMP_(ULONG) CMediaSample::AddRef() {
    return static_cast<ULONG>(m_cRef.fetch_add(1, std::memory_order_relaxed) + 1);
}

STDMETHODIMP_(ULONG) CMediaSample::Release() {
    const LONG left = m_cRef.fetch_sub(1, std::memory_order_acq_rel) - 1;
    if (left > 0)
        return static_cast<ULONG>(left);
    SetMediaType(nullptr);
    m_dwFlags = 0;
    m_dwTypeSpecificFlags = 0;
    m_dwStreamId = AM_STREAM_MEDIA;
    m_bMediaTimeValid = false;
    m_lActual = m_cbBuffer;
    m_pAllocator->ReleaseBuffer(this);
    return 0;
}

HRESULT CMediaSample::SetPointer(BYTE* ptr, LONG cBytes) {
    if (cBytes < 0)
        return E_INVALIDARG;
    m_pBuffer = ptr;
    m_cbBuffer = cBytes;
    m_lActual = cBytes;
    return S_OK;
}

HRESULT CMediaSample::SetFlag(DWORD flag, bool on) {
    m_dwFlags = on ? m_dwFlags | flag : m_dwFlags & ~flag;
    return S_OK;
}

STDMETHODIMP CMediaSample::GetPointer(BYTE** ppBuffer) {
    if (!ppBuffer)
        return E_POINTER;
    *ppBuffer = m_pBuffer;
    return S_OK;
}

STDMETHODIMP_(LONG) CMediaSample::GetSize() {
    return m_cbBuffer;
}

STDMETHODIMP CMediaSample::GetTime(REFERENCE_TIME* pTimeStart, REFERENCE_TIME* pTimeEnd) {
    if (!pTimeStart || !pTimeEnd)
        return E_POINTER;
    if (!(m_dwFlags & AM_SAMPLE_TIMEVALID))
        return VFW_E_SAMPLE_TIME_NOT_SET;
    const bool hasStop = (m_dwFlags & AM_SAMPLE_STOPVALID) != 0;
    *pTimeStart = m_Start;
    *pTimeEnd = hasStop ? m_End : m_Start + 1;
    return hasStop ? S_OK : VFW_S_NO_STOP_TIME;
}

STDMETHODIMP CMediaSample::SetTime(REFERENCE_TIME* pTimeStart, REFERENCE_TIME* pTimeEnd) {
    if (!pTimeStart && pTimeEnd)
        return E_INVALIDARG;
    if (pTimeStart)
        m_Start = *pTimeStart;
    if (pTimeEnd)
        m_End = *pTimeEnd;
    SetFlag(AM_SAMPLE_TIMEVALID, pTimeStart != nullptr);
    return SetFlag(AM_SAMPLE_STOPVALID, pTimeEnd != nullptr);
}

STDMETHODIMP CMediaSample::IsSyncPoint() {
    return Flag(AM_SAMPLE_SPLICEPOINT);
}

STDMETHODIMP CMediaSample::SetSyncPoint(BOOL bIsSyncPoint) {
    return SetFlag(AM_SAMPLE_SPLICEPOINT, bIsSyncPoint != FALSE);
}

STDMETHODIMP CMediaSample::IsPreroll() {
    return Flag(AM_SAMPLE_PREROLL);
}

STDMETHODIMP CMediaSample::SetPreroll(BOOL bIsPreroll) {
    return SetFlag(AM_SAMPLE_PREROLL, bIsPreroll != FALSE);
}

STDMETHODIMP_(LONG) CMediaSample::GetActualDataLength() {
    return m_lActual;
}

STDMETHODIMP CMediaSample::SetActualDataLength(LONG lActual) {
    if (lActual < 0 || lActual > m_cbBuffer)
        return VFW_E_BUFFER_OVERFLOW;
    m_lActual = lActual;
    return S_OK;
}

STDMETHODIMP CMediaSample::GetMediaType(AM_MEDIA_TYPE** ppMediaType) {
    if (!ppMediaType)
        return E_POINTER;
    *ppMediaType = nullptr;
    if (!m_pMediaType)
        return S_FALSE;
    *ppMediaType = CreateMediaType(m_pMediaType);
    return *ppMediaType ? S_OK : E_OUTOFMEMORY;
}

STDMETHODIMP CMediaSample::SetMediaType(AM_MEDIA_TYPE* pMediaType) {
    AM_MEDIA_TYPE* copy = pMediaType ? CreateMediaType(pMediaType) : nullptr;
    if (pMediaType && !copy)
        return E_OUTOFMEMORY;
    DeleteMediaType(m_pMediaType);
    m_pMediaType = copy;
    return SetFlag(AM_SAMPLE_TYPECHANGED, copy != nullptr);
}

STDMETHODIMP CMediaSample::IsDiscontinuity() {
    return Flag(AM_SAMPLE_DATADISCONTINUITY);
}

STDMETHODIMP CMediaSample::SetDiscontinuity(BOOL bDiscontinuity) {
    return SetFlag(AM_SAMPLE_DATADISCONTINUITY, bDiscontinuity != FALSE);
}

STDMETHODIMP CMediaSample::GetMediaTime(LONGLONG* pTimeStart, LONGLONG* pTimeEnd) {
    if (!pTimeStart || !pTimeEnd)
        return E_POINTER;
    if (!m_bMediaTimeValid)
        return VFW_E_MEDIA_TIME_NOT_SET;
    *pTimeStart = m_MediaStart;
    *pTimeEnd = m_MediaEnd;
    return S_OK;
}

STDMETHODIMP CMediaSample::SetMediaTime(LONGLONG* pTimeStart, LONGLONG* pTimeEnd) {
    if (pTimeStart && !pTimeEnd)
        return E_POINTER;
    m_bMediaTimeValid = pTimeStart != nullptr;
    if (!m_bMediaTimeValid)
        return S_OK;
    m_MediaStart = *pTimeStart;
    m_MediaEnd = *pTimeEnd;
    return S_OK;
}

STDMETHODIMP CMediaSample::GetProperties(DWORD cbProperties, BYTE* pbProperties) {
    if (!pbProperties && cbProperties != 0)
        return E_POINTER;
    const DWORD bytes = std::min<DWORD>(cbProperties, sizeof(AM_SAMPLE2_PROPERTIES));
    AM_SAMPLE2_PROPERTIES properties = {};
    properties.cbData = bytes;
    properties.dwTypeSpecificFlags = m_dwTypeSpecificFlags;
    properties.dwSampleFlags = m_dwFlags;
    properties.lActual = m_lActual;
    properties.tStart = m_Start;
    properties.tStop = m_End;
    properties.dwStreamId = m_dwStreamId;
    properties.pMediaType = m_pMediaType;
    properties.pbBuffer = m_pBuffer;
    properties.cbBuffer = m_cbBuffer;
    if (bytes != 0)
        std::memcpy(pbProperties, &properties, bytes);
    return S_OK;
}

STDMETHODIMP CMediaSample::SetProperties(DWORD cbProperties, const BYTE* pbProperties) {
    if (!pbProperties && cbProperties != 0)
        return E_POINTER;
    const DWORD bytes = std::min<DWORD>(cbProperties, sizeof(AM_SAMPLE2_PROPERTIES));
    AM_SAMPLE2_PROPERTIES properties = {};
    if (bytes != 0)
        std::memcpy(&properties, pbProperties, bytes);
    // A field counts when all of it was given; bytes of one that was cut must not be taken for a value.
    const auto given = [&](const auto& field) {
        const auto* end = reinterpret_cast<const BYTE*>(&field + 1);
        return end - reinterpret_cast<const BYTE*>(&properties) <= static_cast<std::ptrdiff_t>(bytes);
    };

    if ((given(properties.pbBuffer) && properties.pbBuffer) ||
        (given(properties.cbBuffer) && properties.cbBuffer != 0))
        return E_INVALIDARG;
    const bool newLength = given(properties.lActual);
    if (newLength && (properties.lActual < 0 || properties.lActual > m_cbBuffer))
        return VFW_E_BUFFER_OVERFLOW;
    if (given(properties.pMediaType)) {
        const bool newType = (properties.dwSampleFlags & AM_SAMPLE_TYPECHANGED) != 0;
        if (newType && !properties.pMediaType)
            return E_INVALIDARG;
        const HRESULT hr = SetMediaType(newType ? properties.pMediaType : nullptr);
        if (FAILED(hr))
            return hr;
    }
    if (given(properties.dwTypeSpecificFlags))
        m_dwTypeSpecificFlags = properties.dwTypeSpecificFlags;
    if (given(properties.dwSampleFlags)) {
        m_dwFlags = properties.dwSampleFlags;
        SetFlag(AM_SAMPLE_TYPECHANGED, m_pMediaType != nullptr);
    }
    if (newLength)
        m_lActual = properties.lActual;
    if (given(properties.tStart))
        m_Start = properties.tStart;
    if (given(properties.tStop))
        m_End = properties.tStop;
    if (given(properties.dwStreamId))
        m_dwStreamId = properties.dwStreamId;
    return S_OK;
}

void CopySampleProperties(IMediaSample* pSource, IMediaSample* pDest) {
    const auto source2 = QueryFor<IMediaSample2>(pSource, IID_IMediaSample2);
    const auto dest2 = QueryFor<IMediaSample2>(pDest, IID_IMediaSample2);
    AM_SAMPLE2_PROPERTIES properties = {};
    constexpr DWORD kFlagsOnly = offsetof(AM_SAMPLE2_PROPERTIES, lActual);
    if (source2 && dest2 &&
        SUCCEEDED(source2->GetProperties(kFlagsOnly, reinterpret_cast<BYTE*>(&properties)))) {
        properties.dwSampleFlags &= ~static_cast<DWORD>(AM_SAMPLE_TYPECHANGED);
        dest2->SetProperties(kFlagsOnly, reinterpret_cast<const BYTE*>(&properties));
    }

    REFERENCE_TIME start = 0;
    REFERENCE_TIME stop = 0;
    const HRESULT times = pSource->GetTime(&start, &stop);
    pDest->SetTime(SUCCEEDED(times) ? &start : nullptr, times == S_OK ? &stop : nullptr);
    const bool hasMediaTime = SUCCEEDED(pSource->GetMediaTime(&start, &stop));
    pDest->SetMediaTime(hasMediaTime ? &start : nullptr, hasMediaTime ? &stop : nullptr);
    pDest->SetSyncPoint(pSource->IsSyncPoint() == S_OK);
    pDest->SetPreroll(pSource->IsPreroll() == S_OK);
    pDest->SetDiscontinuity(pSource->IsDiscontinuity() == S_OK);
}
