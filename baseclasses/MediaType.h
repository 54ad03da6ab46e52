// Media types: the class that owns one, and the functions for those that cross interfaces.
#pragma once

#include <dshow.h>

/// A copy of `pSrc` with format block, both in task memory; null when memory runs out. For DeleteMediaType.
[[nodiscard]] AM_MEDIA_TYPE* CreateMediaType(const AM_MEDIA_TYPE* pSrc);
/// Frees a media type made by CreateMediaType or got from an interface. Null is allowed.
void DeleteMediaType(AM_MEDIA_TYPE* pmt);
/// Makes `pmtTarget`, whose old content is not looked at, a deep copy. E_OUTOFMEMORY leaves it without a
/// format block.
HRESULT CopyMediaType(AM_MEDIA_TYPE* pmtTarget, const AM_MEDIA_TYPE* pmtSource);
/// Frees what the record owns (format block, unknown); the record itself stays.
void FreeMediaType(AM_MEDIA_TYPE& mt);

/// An AM_MEDIA_TYPE that owns its format block. Adds no data, so that it can be handed on as the record.
class CMediaType : public AM_MEDIA_TYPE {
  public:
    CMediaType();
    explicit CMediaType(const GUID* majortype);
    CMediaType(const AM_MEDIA_TYPE& mt);
    CMediaType(const CMediaType& mt);
    ~CMediaType();
    /// Without memory for the format block the type ends up without one; Set reports that.
    CMediaType& operator=(const AM_MEDIA_TYPE& mt);
    CMediaType& operator=(const CMediaType& mt);

    HRESULT Set(const AM_MEDIA_TYPE& mt);
    /// Back to an empty type, everything freed.
    void InitMediaType();

    /// Same major type, subtype, format type and format bytes; sample size and flags do not count.
    bool operator==(const CMediaType& mt) const;

    bool IsValid() const { return majortype != GUID_NULL; }
    const GUID* Type() const { return &majortype; }
    void SetType(const GUID* type) { majortype = *type; }
    const GUID* Subtype() const { return &subtype; }
    void SetSubtype(const GUID* type) { subtype = *type; }

    bool IsFixedSize() const { return bFixedSizeSamples != FALSE; }
    bool IsTemporalCompressed() const { return bTemporalCompression != FALSE; }
    /// Bytes in a sample; 0 when samples differ in size.
    ULONG GetSampleSize() const { return IsFixedSize() ? lSampleSize : 0; }
    /// 0 means that samples differ in size.
    void SetSampleSize(ULONG bytes);
    void SetVariableSize() { bFixedSizeSamples = FALSE; }
    void SetTemporalCompression(bool compressed) { bTemporalCompression = compressed ? TRUE : FALSE; }

    const GUID* FormatType() const { return &formattype; }
    void SetFormatType(const GUID* type) { formattype = *type; }
    BYTE* Format() const { return pbFormat; }
    ULONG FormatLength() const { return cbFormat; }
    /// Copies `bytes` bytes; false when memory runs out, the old block then stays.
    bool SetFormat(const BYTE* format, ULONG bytes);
    void ResetFormatBuffer();
    /// A block of `bytes` bytes of unspecified content, or null (the old block then stays).
    BYTE* AllocFormatBuffer(ULONG bytes);
    /// The same, keeping the bytes that fit.
    BYTE* ReallocFormatBuffer(ULONG bytes);

    /// Whether this type fits another one that leaves identifiers (or all of the format) open as GUID_NULL.
    bool MatchesPartial(const CMediaType* partial) const;
    /// Whether the major type or the format type is open.
    bool IsPartiallySpecified() const;
};
static_assert(sizeof(CMediaType) == sizeof(AM_MEDIA_TYPE));
