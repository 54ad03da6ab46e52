// The module's class table, its class factory, and what the module's exports forward to.
#pragma once

#include "baseclasses/MovieSetup.h"
#include "baseclasses/Unknown.h"

/// Makes an object with no reference yet, or returns null; `phr` takes a failure of either.
using LPFNNewCOMObject = CUnknown*(CALLBACK*)(LPUNKNOWN pUnkOuter, HRESULT* phr);
/// Told when the module is loaded and unloaded.
using LPFNInitRoutine = void(CALLBACK*)(BOOL bLoading, const CLSID* rclsid);

/// One line of the class table.
class CFactoryTemplate {
  public:
    const WCHAR* m_Name;
    const CLSID* m_ClsID;
    LPFNNewCOMObject m_lpfnNew;
    LPFNInitRoutine m_lpfnInit;
    const AMOVIESETUP_FILTER* m_pAMovieSetup_Filter;

    bool IsClassID(REFCLSID rclsid) const { return *m_ClsID == rclsid; }
    CUnknown* CreateInstance(LPUNKNOWN pUnk, HRESULT* phr) const { return m_lpfnNew(pUnk, phr); }
};

/// The class table: defined by the module that has the classes.
extern CFactoryTemplate g_Templates[];
extern int g_cTemplates;

/// The module as the system knows it; set by DllEntryPoint.
extern HINSTANCE g_hInst;

/// A factory for the class `rclsid`. `riid` is IUnknown or IClassFactory, else E_NOINTERFACE; a class that is
/// not in the table gives CLASS_E_CLASSNOTAVAILABLE. For DllGetClassObject.
HRESULT GetClassObject(REFCLSID rclsid, REFIID riid, void** ppv);

/// S_OK when no object of the module is alive and no factory holds a server lock, else S_FALSE. For
/// DllCanUnloadNow.
HRESULT CanUnloadNow();

/// Bookkeeping at the module's load (`reason` DLL_PROCESS_ATTACH) and unload (DLL_PROCESS_DETACH): calls the
/// table's init routines. Always TRUE.
BOOL WINAPI DllEntryPoint(HINSTANCE hInstance, ULONG reason, LPVOID reserved);
