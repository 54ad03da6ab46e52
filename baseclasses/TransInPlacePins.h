// The pins of an in-place filter: they share allocator and media type across it.
#pragma once

#include "baseclasses/TransformPins.h"

class CTransInPlaceFilter;

class CTransInPlaceInputPin : public CTransformInputPin {
  public:
    CTransInPlaceInputPin(LPCTSTR pObjectName, CTransInPlaceFilter* pFilter, HRESULT* phr, LPCWSTR pName);

    /// What the downstream pin prefers; VFW_E_NOT_CONNECTED while the output is not connected.
    STDMETHODIMP EnumMediaTypes(IEnumMediaTypes** ppEnum) override;
    /// The downstream pin's allocator once the output is connected.
    STDMETHODIMP GetAllocator(IMemAllocator** ppAllocator) override;
    /// Offers the allocator downstream too, once the output is connected.
    STDMETHODIMP NotifyAllocator(IMemAllocator* pAllocator, BOOL bReadOnly) override;
    /// The downstream pin's requirements; E_NOTIMPL while the output is not connected.
    STDMETHODIMP GetAllocatorRequirements(ALLOCATOR_PROPERTIES* pProps) override;

    /// The filter must take the type and so must the downstream pin.
    HRESULT CheckMediaType(const CMediaType* pmt) override;

    /// The connection's allocator, no reference added; null when there is none.
    IMemAllocator* PeekAllocator() const { return m_pAllocator; }
    bool ReadOnly() const { return m_bReadOnly; }

  protected:
    CTransInPlaceFilter* m_pTIPFilter;
};

class CTransInPlaceOutputPin : public CTransformOutputPin {
  public:
    CTransInPlaceOutputPin(LPCTSTR pObjectName, CTransInPlaceFilter* pFilter, HRESULT* phr, LPCWSTR pName);

    /// The filter must take the type and so must the upstream pin. While samples are copied a running stream
    /// keeps its type.
    HRESULT CheckMediaType(const CMediaType* pmt) override;
    /// The input's allocator if it may be written to and the peer takes it, else one to copy into.
    HRESULT DecideAllocator(IMemInputPin* pPin, IMemAllocator** ppAlloc) override;

    /// The peer, no reference added; null while not connected.
    IMemInputPin* ConnectedIMemInputPin() const { return m_pInputPin; }
    /// The connection's allocator, no reference added; null when there is none.
    IMemAllocator* PeekAllocator() const { return m_pAllocator; }
    /// Chooses the connection's allocator once more, after that of the input has changed.
    HRESULT RedecideAllocator();

  protected:
    CTransInPlaceFilter* m_pTIPFilter;
};
