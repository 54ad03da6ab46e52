#include "baseclasses/ClassFactory.h"

#include "platform/ComGuard.h"

#include <memory>

HINSTANCE g_hInst = nullptr;

namespace {

std::atomic<LONG> g_serverLocks = 0;

/// Makes objects of one line of the class table.
class CClassFactory final : public CUnknown, public IClassFactory {
  public:
    explicit CClassFactory(const CFactoryTemplate& entry)
        : CUnknown(NAME("factory"), nullptr), m_entry(entry) {}

    DECLARE_IUNKNOWN
    STDMETHODIMP NonDelegatingQueryInterface(REFIID riid, void** ppv) override;
    STDMETHODIMP CreateInstance(IUnknown* pUnkOuter, REFIID riid, void** ppv) override;
    STDMETHODIMP LockServer(BOOL lock) override;

  private:
    const CFactoryTemplate& m_entry;
};

STDMETHODIMP CClassFactory::NonDelegatingQueryInterface(REFIID riid, void** ppv) {
    if (riid == IID_IClassFactory)
        return GetInterface(static_cast<IClassFactory*>(this), ppv);
    return CUnknown::NonDelegatingQueryInterface(riid, ppv);
}

STDMETHODIMP CClassFactory::CreateInstance(IUnknown* pUnkOuter, REFIID riid, void** ppv) {
    if (!ppv)
        return E_POINTER;
    *ppv = nullptr;
    // Any other interface would delegate to the outer object, which does not know its inner one yet.
    if (pUnkOuter && riid != IID_IUnknown)
        return E_NOINTERFACE;
    return scenedetect::Guarded([&]() -> HRESULT {
        HRESULT hr = S_OK;
        std::unique_ptr<CUnknown> made(m_entry.CreateInstance(pUnkOuter, &hr));
        if (!made)
            return FAILED(hr) ? hr : E_OUTOFMEMORY;
        if (FAILED(hr))
            return hr;
        CUnknown* object = made.release();
        object->NonDelegatingAddRef();
        hr = object->NonDelegatingQueryInterface(riid, ppv);
        object->NonDelegatingRelease();
        return hr;
    });
}

STDMETHODIMP CClassFactory::LockServer(BOOL lock) {
    g_serverLocks += lock ? 1 : -1;
    return S_OK;
}

void CallInitRoutines(BOOL loading) {
    for (int n = 0; n < g_cTemplates; ++n)
        if (g_Templates[n].m_lpfnInit)
            g_Templates[n].m_lpfnInit(loading, g_Templates[n].m_ClsID);
}

} // namespace

HRESULT GetClassObject(REFCLSID rclsid, REFIID riid, void** ppv) {
    if (!ppv)
        return E_POINTER;
    *ppv = nullptr;
    if (riid != IID_IUnknown && riid != IID_IClassFactory)
        return E_NOINTERFACE;
    for (int n = 0; n < g_cTemplates; ++n) {
        if (!g_Templates[n].IsClassID(rclsid))
            continue;
        auto* factory = new (std::nothrow) CClassFactory(g_Templates[n]);
        return factory ? factory->NonDelegatingQueryInterface(riid, ppv) : E_OUTOFMEMORY;
    }
    return CLASS_E_CLASSNOTAVAILABLE;
}

HRESULT CanUnloadNow() {
    return g_serverLocks > 0 || CBaseObject::ObjectsActive() > 0 ? S_FALSE : S_OK;
}

BOOL WINAPI DllEntryPoint(HINSTANCE hInstance, ULONG reason, LPVOID) {
    if (reason == DLL_PROCESS_ATTACH) {
        g_hInst = hInstance;
        CallInitRoutines(TRUE);
    } else if (reason == DLL_PROCESS_DETACH) {
        CallInitRoutines(FALSE);
    }
    return TRUE;
}
