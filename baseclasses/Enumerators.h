// The enumerators of a filter's pins and of a pin's preferred media types.
#pragma once

#include "baseclasses/Unknown.h"

#include <dshow.h>

class CBaseFilter;
class CBasePin;

/// Walks a filter's pins and keeps the filter alive. When the filter's set of pins changes, Next, Skip and
/// Clone answer VFW_E_ENUM_OUT_OF_SYNC until Reset. One thread at a time.
class CEnumPins : public CUnknown, public IEnumPins {
  public:
    explicit CEnumPins(CBaseFilter* pFilter, int position = 0);
    CEnumPins(const CEnumPins&) = delete;
    CEnumPins& operator=(const CEnumPins&) = delete;
    ~CEnumPins() override;

    DECLARE_IUNKNOWN
    STDMETHODIMP NonDelegatingQueryInterface(REFIID riid, void** ppv) override;

    STDMETHODIMP Next(ULONG cPins, IPin** ppPins, ULONG* pcFetched) override;
    /// S_FALSE, and no move, when fewer pins are left.
    STDMETHODIMP Skip(ULONG cPins) override;
    STDMETHODIMP Reset() override;
    STDMETHODIMP Clone(IEnumPins** ppEnum) override;

  private:
    CBaseFilter* m_pFilter;
    int m_position;
    LONG m_version;
};

/// Walks a pin's preferred media types and keeps the pin alive; out of step it answers as CEnumPins does.
/// One thread at a time.
class CEnumMediaTypes : public CUnknown, public IEnumMediaTypes {
  public:
    explicit CEnumMediaTypes(CBasePin* pPin, int position = 0);
    CEnumMediaTypes(const CEnumMediaTypes&) = delete;
    CEnumMediaTypes& operator=(const CEnumMediaTypes&) = delete;
    ~CEnumMediaTypes() override;

    DECLARE_IUNKNOWN
    STDMETHODIMP NonDelegatingQueryInterface(REFIID riid, void** ppv) override;

    /// The types handed out are the caller's, to be freed by DeleteMediaType.
    STDMETHODIMP Next(ULONG cMediaTypes, AM_MEDIA_TYPE** ppMediaTypes, ULONG* pcFetched) override;
    /// S_FALSE when the position lies past the end afterwards.
    STDMETHODIMP Skip(ULONG cMediaTypes) override;
    STDMETHODIMP Reset() override;
    STDMETHODIMP Clone(IEnumMediaTypes** ppEnum) override;

  private:
    CBasePin* m_pPin;
    int m_position;
    LONG m_version;
};
