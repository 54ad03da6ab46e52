#include "baseclasses/MediaType.h"

#include <algorithm>
#include <cstring>

namespace {

bool SameFormatBytes(const AM_MEDIA_TYPE& a, const AM_MEDIA_TYPE& b) {
    return a.cbFormat == b.cbFormat &&
           (a.cbFormat == 0 || std::memcmp(a.pbFormat, b.pbFormat, a.cbFormat) == 0);
}

} // namespace

HRESULT CopyMediaType(AM_MEDIA_TYPE* pmtTarget, const AM_MEDIA_TYPE* pmtSource) {
    *pmtTarget = *pmtSource;
    pmtTarget->cbFormat = 0;
    pmtTarget->pbFormat = nullptr;
    if (pmtTarget->pUnk)
        pmtTarget->pUnk->AddRef();
    if (pmtSource->cbFormat == 0 || !pmtSource->pbFormat)
        return S_OK;

    pmtTarget->pbFormat = static_cast<BYTE*>(CoTaskMemAlloc(pmtSource->cbFormat));
    if (!pmtTarget->pbFormat)
        return E_OUTOFMEMORY;
    std::memcpy(pmtTarget->pbFormat, pmtSource->pbFormat, pmtSource->cbFormat);
    pmtTarget->cbFormat = pmtSource->cbFormat;
    return S_OK;
}

void FreeMediaType(AM_MEDIA_TYPE& mt) {
    CoTaskMemFree(mt.pbFormat);
    mt.pbFormat = nullptr;
    mt.cbFormat = 0;
    if (mt.pUnk)
        mt.pUnk->Release();
    mt.pUnk = nullptr;
}

AM_MEDIA_TYPE* CreateMediaType(const AM_MEDIA_TYPE* pSrc) {
    auto* pmt = static_cast<AM_MEDIA_TYPE*>(CoTaskMemAlloc(sizeof(AM_MEDIA_TYPE)));
    if (pmt && FAILED(CopyMediaType(pmt, pSrc))) {
        DeleteMediaType(pmt);
        return nullptr;
    }
    return pmt;
}

void DeleteMediaType(AM_MEDIA_TYPE* pmt) {
    if (!pmt)
        return;
    FreeMediaType(*pmt);
    CoTaskMemFree(pmt);
}

CMediaType::CMediaType() : AM_MEDIA_TYPE{} {
    InitMediaType();
}

CMediaType::CMediaType(const GUID* type) : CMediaType() {
    majortype = *type;
}

CMediaType::CMediaType(const AM_MEDIA_TYPE& mt) : AM_MEDIA_TYPE{} {
    CopyMediaType(this, &mt);
}

CMediaType::CMediaType(const CMediaType& mt) : CMediaType(static_cast<const AM_MEDIA_TYPE&>(mt)) {}

CMediaType::~CMediaType() {
    FreeMediaType(*this);
}

CMediaType& CMediaType::operator=(const AM_MEDIA_TYPE& mt) {
    Set(mt);
    return *this;
}

CMediaType& CMediaType::operator=(const CMediaType& mt) {
    if (&mt != this)
        Set(mt);
    return *this;
}

HRESULT CMediaType::Set(const AM_MEDIA_TYPE& mt) {
    if (&mt == this)
        return S_OK;
    FreeMediaType(*this);
    return CopyMediaType(this, &mt);
}

void CMediaType::InitMediaType() {
    FreeMediaType(*this);
    static_cast<AM_MEDIA_TYPE&>(*this) = AM_MEDIA_TYPE{};
    lSampleSize = 1;
    bFixedSizeSamples = TRUE;
}

bool CMediaType::operator==(const CMediaType& mt) const {
    return majortype == mt.majortype && subtype == mt.subtype && formattype == mt.formattype &&
           SameFormatBytes(*this, mt);
}

void CMediaType::SetSampleSize(ULONG bytes) {
    bFixedSizeSamples = bytes != 0 ? TRUE : FALSE;
    if (bytes != 0)
        lSampleSize = bytes;
}

bool CMediaType::SetFormat(const BYTE* format, ULONG bytes) {
    if (bytes == 0) {
        ResetFormatBuffer();
        return true;
    }
    if (!AllocFormatBuffer(bytes))
        return false;
    std::memcpy(pbFormat, format, bytes);
    return true;
}

void CMediaType::ResetFormatBuffer() {
    CoTaskMemFree(pbFormat);
    pbFormat = nullptr;
    cbFormat = 0;
}

BYTE* CMediaType::AllocFormatBuffer(ULONG bytes) {
    auto* block = static_cast<BYTE*>(CoTaskMemAlloc(bytes));
    if (!block)
        return nullptr;
    ResetFormatBuffer();
    pbFormat = block;
    cbFormat = bytes;
    return pbFormat;
}

BYTE* CMediaType::ReallocFormatBuffer(ULONG bytes) {
    auto* block = static_cast<BYTE*>(CoTaskMemAlloc(bytes));
    if (!block)
        return nullptr;
    if (cbFormat != 0)
        std::memcpy(block, pbFormat, std::min(cbFormat, bytes));
    ResetFormatBuffer();
    pbFormat = block;
    cbFormat = bytes;
    return pbFormat;
}

bool CMediaType::MatchesPartial(const CMediaType* partial) const {
    if (partial->majortype != GUID_NULL && partial->majortype != majortype)
        return false;
    if (partial->subtype != GUID_NULL && partial->subtype != subtype)
        return false;
    if (partial->formattype == GUID_NULL)
        return true;
    return partial->formattype == formattype && SameFormatBytes(*partial, *this);
}

bool CMediaType::IsPartiallySpecified() const {
    return majortype == GUID_NULL || formattype == GUID_NULL;
}
