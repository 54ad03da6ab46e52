// Reference counting, interface lookup and aggregation: the root of every COM object of the module.
#pragma once

#include <windows.h>

#include <atomic>

/// Object names are a debugging aid of the framework; they are not kept.
#define NAME(text) static_cast<LPCTSTR>(nullptr)

/// Counts the module's living objects.
class CBaseObject {
  public:
    static LONG ObjectsActive();
    CBaseObject(const CBaseObject&) = delete;
    CBaseObject& operator=(const CBaseObject&) = delete;

  protected:
    CBaseObject();
    ~CBaseObject();
};

/// The object's own lookup and count, which the outer object of an aggregate does not see.
struct INonDelegatingUnknown {
    STDMETHOD(NonDelegatingQueryInterface)(REFIID riid, void** ppv) = 0;
    STDMETHOD_(ULONG, NonDelegatingAddRef)() = 0;
    STDMETHOD_(ULONG, NonDelegatingRelease)() = 0;

  protected:
    ~INonDelegatingUnknown() = default;
};

/// Base of every COM object. Starts with no reference; deletes itself with the last one.
///
/// With an outer unknown all interfaces of the object count and look up there; the object's own IUnknown
/// (what NonDelegatingQueryInterface gives for IID_IUnknown) counts for the object itself. The outer
/// unknown is not referenced, since it outlives what it aggregates.
class CUnknown : public INonDelegatingUnknown, public CBaseObject {
  public:
    CUnknown(LPCTSTR pName, LPUNKNOWN pUnk);
    CUnknown(LPCTSTR pName, LPUNKNOWN pUnk, HRESULT* phr);
    virtual ~CUnknown() = default;

    /// The outer unknown, or the object's own when it stands alone. No reference is added.
    LPUNKNOWN GetOwner() const { return m_pUnknown; }

    /// Derived classes answer for their interfaces with GetInterface and pass the rest on to their base.
    STDMETHODIMP NonDelegatingQueryInterface(REFIID riid, void** ppv) override;
    STDMETHODIMP_(ULONG) NonDelegatingAddRef() override;
    STDMETHODIMP_(ULONG) NonDelegatingRelease() override;

  protected:
    std::atomic<LONG> m_cRef = 0;

  private:
    /// The object's own IUnknown: forwards to the non-delegating methods.
    class CInnerUnknown final : public IUnknown {
      public:
        explicit CInnerUnknown(CUnknown& object) : m_object(object) {}
        STDMETHODIMP QueryInterface(REFIID riid, void** ppv) override;
        STDMETHODIMP_(ULONG) AddRef() override;
        STDMETHODIMP_(ULONG) Release() override;

      private:
        CUnknown& m_object;
    };

    CInnerUnknown m_inner;
    LPUNKNOWN m_pUnknown;
};

/// Hands out `pUnk` with a reference added. E_POINTER when there is nowhere to put it.
HRESULT GetInterface(LPUNKNOWN pUnk, void** ppv);

/// The IUnknown methods of a class that derives from CUnknown and one or more interfaces.
#define DECLARE_IUNKNOWN                                                                                     \
    STDMETHODIMP QueryInterface(REFIID riid, void** ppv) override {                                          \
        return GetOwner()->QueryInterface(riid, ppv);                                                        \
    }                                                                                                        \
    STDMETHODIMP_(ULONG) AddRef() override {                                                                 \
        return GetOwner()->AddRef();                                                                         \
    }                                                                                                        \
    STDMETHODIMP_(ULONG) Release() override {                                                                \
        return GetOwner()->Release();                                                                        \
    }
