#include "baseclasses/Unknown.h"

namespace {
std::atomic<LONG> g_objects = 0;
}

CBaseObject::CBaseObject() {
    g_objects.fetch_add(1, std::memory_order_relaxed);
}

CBaseObject::~CBaseObject() {
    g_objects.fetch_sub(1, std::memory_order_release);
}

LONG CBaseObject::ObjectsActive() {
    return g_objects.load(std::memory_order_acquire);
}

CUnknown::CUnknown(LPCTSTR, LPUNKNOWN pUnk) : m_inner(*this), m_pUnknown(pUnk ? pUnk : &m_inner) {}

CUnknown::CUnknown(LPCTSTR pName, LPUNKNOWN pUnk, HRESULT*) : CUnknown(pName, pUnk) {}

STDMETHODIMP CUnknown::NonDelegatingQueryInterface(REFIID riid, void** ppv) {
    if (!ppv)
        return E_POINTER;
    if (riid == IID_IUnknown)
        return GetInterface(&m_inner, ppv);
    *ppv = nullptr;
    return E_NOINTERFACE;
}

STDMETHODIMP_(ULONG) CUnknown::NonDelegatingAddRef() {
    return static_cast<ULONG>(m_cRef.fetch_add(1, std::memory_order_relaxed) + 1);
}

STDMETHODIMP_(ULONG) CUnknown::NonDelegatingRelease() {
    const LONG left = m_cRef.fetch_sub(1, std::memory_order_acq_rel) - 1;
    if (left > 0)
        return static_cast<ULONG>(left);
    // Destructors may hand the object out once more; that must not delete it again.
    m_cRef.store(1, std::memory_order_relaxed);
    delete this;
    return 0;
}

STDMETHODIMP CUnknown::CInnerUnknown::QueryInterface(REFIID riid, void** ppv) {
    return m_object.NonDelegatingQueryInterface(riid, ppv);
}

STDMETHODIMP_(ULONG) CUnknown::CInnerUnknown::AddRef() {
    return m_object.NonDelegatingAddRef();
}

STDMETHODIMP_(ULONG) CUnknown::CInnerUnknown::Release() {
    return m_object.NonDelegatingRelease();
}

HRESULT GetInterface(LPUNKNOWN pUnk, void** ppv) {
    if (!ppv)
        return E_POINTER;
    pUnk->AddRef();
    *ppv = pUnk;
    return S_OK;
}
