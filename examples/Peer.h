// What the filter's pins are connected to: a pin that has no filter behind it.
#pragma once

#include <IKxSceneDetect.h>

/// The end of a connection on either side of the filter. It agrees to everything and drops what it gets.
/// Lives on the stack, so that references to it are not counted.
class Peer : public IPin, public IMemInputPin {
  public:
    explicit Peer(PIN_DIRECTION direction) : m_direction(direction) {}

    STDMETHODIMP QueryInterface(REFIID riid, void** found) override {
        if (riid == IID_IUnknown || riid == IID_IPin)
            *found = static_cast<IPin*>(this);
        else if (riid == IID_IMemInputPin && m_direction == PINDIR_INPUT)
            *found = static_cast<IMemInputPin*>(this);
        else
            return *found = nullptr, E_NOINTERFACE;
        return S_OK;
    }
    STDMETHODIMP_(ULONG) AddRef() override { return 2; }
    STDMETHODIMP_(ULONG) Release() override { return 1; }

    // Asked while the filter's pin connects.
    STDMETHODIMP QueryDirection(PIN_DIRECTION* direction) override { return *direction = m_direction, S_OK; }
    STDMETHODIMP ReceiveConnection(IPin*, const AM_MEDIA_TYPE*) override { return S_OK; }
    STDMETHODIMP QueryAccept(const AM_MEDIA_TYPE*) override { return S_OK; }
    STDMETHODIMP Disconnect() override { return S_OK; }
    STDMETHODIMP NotifyAllocator(IMemAllocator*, BOOL) override { return S_OK; }

    // What arrives.
    STDMETHODIMP Receive(IMediaSample*) override { return S_OK; }
    STDMETHODIMP EndOfStream() override { return S_OK; }

    // Nobody needs these here.
    STDMETHODIMP Connect(IPin*, const AM_MEDIA_TYPE*) override { return E_NOTIMPL; }
    STDMETHODIMP ConnectedTo(IPin**) override { return E_NOTIMPL; }
    STDMETHODIMP ConnectionMediaType(AM_MEDIA_TYPE*) override { return E_NOTIMPL; }
    STDMETHODIMP QueryPinInfo(PIN_INFO*) override { return E_NOTIMPL; }
    STDMETHODIMP QueryId(LPWSTR*) override { return E_NOTIMPL; }
    STDMETHODIMP EnumMediaTypes(IEnumMediaTypes**) override { return E_NOTIMPL; }
    STDMETHODIMP QueryInternalConnections(IPin**, ULONG*) override { return E_NOTIMPL; }
    STDMETHODIMP BeginFlush() override { return S_OK; }
    STDMETHODIMP EndFlush() override { return S_OK; }
    STDMETHODIMP NewSegment(REFERENCE_TIME, REFERENCE_TIME, double) override { return S_OK; }
    STDMETHODIMP GetAllocator(IMemAllocator**) override { return VFW_E_NO_ALLOCATOR; }
    STDMETHODIMP GetAllocatorRequirements(ALLOCATOR_PROPERTIES*) override { return E_NOTIMPL; }
    STDMETHODIMP ReceiveMultiple(IMediaSample**, LONG, LONG*) override { return E_NOTIMPL; }
    STDMETHODIMP ReceiveCanBlock() override { return S_FALSE; }

  private:
    const PIN_DIRECTION m_direction;
};
