#include "baseclasses/Enumerators.h"

#include "baseclasses/BaseFilter.h"
#include "baseclasses/BasePin.h"

#include <limits>
#include <new>

namespace {

/// Checks the arguments that all Next methods share and starts the count at none.
HRESULT CheckNextArguments(ULONG count, const void* items, ULONG* pcFetched) {
    if (!items)
        return E_POINTER;
    if (!pcFetched && count > 1)
        return E_INVALIDARG;
    if (pcFetched)
        *pcFetched = 0;
    return S_OK;
}

} // namespace

CEnumPins::CEnumPins(CBaseFilter* pFilter, int position)
    : CUnknown(NAME("pins"), nullptr),
      m_pFilter(pFilter),
      m_position(position),
      m_version(pFilter->GetPinVersion()) {
    m_pFilter->AddRef();
}

CEnumPins::~CEnumPins() {
    m_pFilter->Release();
}

STDMETHODIMP CEnumPins::NonDelegatingQueryInterface(REFIID riid, void** ppv) {
    if (riid == IID_IEnumPins)
        return GetInterface(static_cast<IEnumPins*>(this), ppv);
    return CUnknown::NonDelegatingQueryInterface(riid, ppv);
}

STDMETHODIMP CEnumPins::Next(ULONG cPins, IPin** ppPins, ULONG* pcFetched) {
    const HRESULT hr = CheckNextArguments(cPins, ppPins, pcFetched);
    if (FAILED(hr))
        return hr;
    if (m_version != m_pFilter->GetPinVersion())
        return VFW_E_ENUM_OUT_OF_SYNC;

    ULONG fetched = 0;
    while (fetched < cPins && m_position < m_pFilter->GetPinCount()) {
        IPin* pin = m_pFilter->GetPin(m_position);
        if (!pin)
            break;
        pin->AddRef();
        ppPins[fetched++] = pin;
        ++m_position;
    }
    if (pcFetched)
        *pcFetched = fetched;
    return fetched == cPins ? S_OK : S_FALSE;
}

STDMETHODIMP CEnumPins::Skip(ULONG cPins) {
    if (m_version != m_pFilter->GetPinVersion())
        return VFW_E_ENUM_OUT_OF_SYNC;
    if (cPins > static_cast<ULONG>(m_pFilter->GetPinCount() - m_position))
        return S_FALSE;
    m_position += static_cast<int>(cPins);
    return S_OK;
}

STDMETHODIMP CEnumPins::Reset() {
    m_version = m_pFilter->GetPinVersion();
    m_position = 0;
    return S_OK;
}

STDMETHODIMP CEnumPins::Clone(IEnumPins** ppEnum) {
    if (!ppEnum)
        return E_POINTER;
    *ppEnum = nullptr;
    if (m_version != m_pFilter->GetPinVersion())
        return VFW_E_ENUM_OUT_OF_SYNC;
    *ppEnum = new (std::nothrow) CEnumPins(m_pFilter, m_position);
    if (!*ppEnum)
        return E_OUTOFMEMORY;
    (*ppEnum)->AddRef();
    return S_OK;
}

CEnumMediaTypes::CEnumMediaTypes(CBasePin* pPin, int position)
    : CUnknown(NAME("types"), nullptr),
      m_pPin(pPin),
      m_position(position),
      m_version(pPin->GetMediaTypeVersion()) {
    m_pPin->AddRef();
}

CEnumMediaTypes::~CEnumMediaTypes() {
    m_pPin->Release();
}

STDMETHODIMP CEnumMediaTypes::NonDelegatingQueryInterface(REFIID riid, void** ppv) {
    if (riid == IID_IEnumMediaTypes)
        return GetInterface(static_cast<IEnumMediaTypes*>(this), ppv);
    return CUnknown::NonDelegatingQueryInterface(riid, ppv);
}

STDMETHODIMP CEnumMediaTypes::Next(ULONG cMediaTypes, AM_MEDIA_TYPE** ppMediaTypes, ULONG* pcFetched) {
    const HRESULT hr = CheckNextArguments(cMediaTypes, ppMediaTypes, pcFetched);
    if (FAILED(hr))
        return hr;
    if (m_version != m_pPin->GetMediaTypeVersion())
        return VFW_E_ENUM_OUT_OF_SYNC;

    ULONG fetched = 0;
    for (; fetched < cMediaTypes; ++fetched, ++m_position) {
        CMediaType mt;
        if (m_pPin->GetMediaType(m_position, &mt) != S_OK)
            break;
        ppMediaTypes[fetched] = CreateMediaType(&mt);
        if (!ppMediaTypes[fetched])
            break;
    }
    if (pcFetched)
        *pcFetched = fetched;
    return fetched == cMediaTypes ? S_OK : S_FALSE;
}

STDMETHODIMP CEnumMediaTypes::Skip(ULONG cMediaTypes) {
    if (m_version != m_pPin->GetMediaTypeVersion())
        return VFW_E_ENUM_OUT_OF_SYNC;
    if (cMediaTypes == 0)
        return S_OK;
    const ULONG left = static_cast<ULONG>(std::numeric_limits<int>::max() - m_position);
    m_position += static_cast<int>(cMediaTypes < left ? cMediaTypes : left);
    CMediaType last;
    return m_pPin->GetMediaType(m_position - 1, &last) == S_OK ? S_OK : S_FALSE;
}

STDMETHODIMP CEnumMediaTypes::Reset() {
    m_version = m_pPin->GetMediaTypeVersion();
    m_position = 0;
    return S_OK;
}

STDMETHODIMP CEnumMediaTypes::Clone(IEnumMediaTypes** ppEnum) {
    if (!ppEnum)
        return E_POINTER;
    *ppEnum = nullptr;
    if (m_version != m_pPin->GetMediaTypeVersion())
        return VFW_E_ENUM_OUT_OF_SYNC;
    *ppEnum = new (std::nothrow) CEnumMediaTypes(m_pPin, m_position);
    if (!*ppEnum)
        return E_OUTOFMEMORY;
    (*ppEnum)->AddRef();
    return S_OK;
}
