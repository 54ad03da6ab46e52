// A media sample: a block of memory with times, flags and perhaps a new media type.
#pragma once

#include <dshow.h>

#include <atomic>

class CBaseAllocator;

/// Belongs to an allocator and returns to it with its last reference. It owns no memory: the allocator's
/// subclass points it at some, once or frame by frame (SetPointer). One holder at a time writes to it.
class CMediaSample : public IMediaSample2 {
  public:
    CMediaSample(LPCTSTR pName, CBaseAllocator* pAllocator, HRESULT* phr, BYTE* pBuffer = nullptr,
                 LONG length = 0);
    CMediaSample(const CMediaSample&) = delete;
    CMediaSample& operator=(const CMediaSample&) = delete;
    virtual ~CMediaSample();

    STDMETHODIMP QueryInterface(REFIID riid, void** ppv) override;
    STDMETHODIMP_(ULONG) AddRef() override;
    /// The last reference clears type, flags and times and calls the allocator's ReleaseBuffer.
    STDMETHODIMP_(ULONG) Release() override;

    /// Points the sample at `cBytes` bytes, all of them valid data. They must stay until the sample is
    /// released.
    HRESULT SetPointer(BYTE* ptr, LONG cBytes);

    STDMETHODIMP GetPointer(BYTE** ppBuffer) override;
    STDMETHODIMP_(LONG) GetSize() override;
    /// Without a stop time the stop comes out as start + 1, and the result is VFW_S_NO_STOP_TIME.
    STDMETHODIMP GetTime(REFERENCE_TIME* pTimeStart, REFERENCE_TIME* pTimeEnd) override;
    /// Null for both takes the times away, null for the end only the stop time.
    STDMETHODIMP SetTime(REFERENCE_TIME* pTimeStart, REFERENCE_TIME* pTimeEnd) override;
    STDMETHODIMP IsSyncPoint() override;
    STDMETHODIMP SetSyncPoint(BOOL bIsSyncPoint) override;
    STDMETHODIMP IsPreroll() override;
    STDMETHODIMP SetPreroll(BOOL bIsPreroll) override;
    STDMETHODIMP_(LONG) GetActualDataLength() override;
    STDMETHODIMP SetActualDataLength(LONG lActual) override;
    /// S_FALSE and null when the type has not changed, else a copy for the caller to free.
    STDMETHODIMP GetMediaType(AM_MEDIA_TYPE** ppMediaType) override;
    STDMETHODIMP SetMediaType(AM_MEDIA_TYPE* pMediaType) override;
    STDMETHODIMP IsDiscontinuity() override;
    STDMETHODIMP SetDiscontinuity(BOOL bDiscontinuity) override;
    STDMETHODIMP GetMediaTime(LONGLONG* pTimeStart, LONGLONG* pTimeEnd) override;
    STDMETHODIMP SetMediaTime(LONGLONG* pTimeStart, LONGLONG* pTimeEnd) override;

    /// The first `cbProperties` bytes of an AM_SAMPLE2_PROPERTIES. Its type pointer is the sample's own.
    STDMETHODIMP GetProperties(DWORD cbProperties, BYTE* pbProperties) override;
    /// Takes those fields that lie within `cbProperties`. Buffer and buffer size can't be changed this way.
    STDMETHODIMP SetProperties(DWORD cbProperties, const BYTE* pbProperties) override;

  private:
    friend class CSampleList;

    HRESULT Flag(DWORD flag) const { return m_dwFlags & flag ? S_OK : S_FALSE; }
    HRESULT SetFlag(DWORD flag, bool on);

    std::atomic<LONG> m_cRef = 0;
    CBaseAllocator* m_pAllocator;
    CMediaSample* m_pNext = nullptr;
    BYTE* m_pBuffer;
    LONG m_cbBuffer;
    LONG m_lActual;
    DWORD m_dwFlags = 0; // AM_SAMPLE_...
    DWORD m_dwTypeSpecificFlags = 0;
    DWORD m_dwStreamId = AM_STREAM_MEDIA;
    REFERENCE_TIME m_Start = 0;
    REFERENCE_TIME m_End = 0;
    LONGLONG m_MediaStart = 0;
    LONGLONG m_MediaEnd = 0;
    bool m_bMediaTimeValid = false;
    AM_MEDIA_TYPE* m_pMediaType = nullptr;
};

/// Gives `pDest` the times and flags of `pSource`, not its data, length or media type.
void CopySampleProperties(IMediaSample* pSource, IMediaSample* pDest);
