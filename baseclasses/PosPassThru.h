// Seeking and position requests to an output pin, passed on to the pin upstream of the filter.
#pragma once

#include "baseclasses/Unknown.h"

#include <dshow.h>

/// Aggregated by an output pin. Every call goes to the same interface of what the filter's input pin is
/// connected to; E_NOTIMPL when there is no peer or it lacks the interface. Thread-safe.
class CPosPassThru : public CUnknown, public IMediaSeeking, public IMediaPosition {
  public:
    /// `pPin` is the filter's input pin; it is not referenced, since it lives as long as `pUnk`.
    CPosPassThru(LPCTSTR pName, LPUNKNOWN pUnk, HRESULT* phr, IPin* pPin);

    DECLARE_IUNKNOWN
    STDMETHODIMP NonDelegatingQueryInterface(REFIID riid, void** ppv) override;

    STDMETHODIMP GetCapabilities(DWORD* pCapabilities) override;
    STDMETHODIMP CheckCapabilities(DWORD* pCapabilities) override;
    STDMETHODIMP IsFormatSupported(const GUID* pFormat) override;
    STDMETHODIMP QueryPreferredFormat(GUID* pFormat) override;
    STDMETHODIMP GetTimeFormat(GUID* pFormat) override;
    STDMETHODIMP IsUsingTimeFormat(const GUID* pFormat) override;
    STDMETHODIMP SetTimeFormat(const GUID* pFormat) override;
    STDMETHODIMP GetDuration(LONGLONG* pDuration) override;
    STDMETHODIMP GetStopPosition(LONGLONG* pStop) override;
    STDMETHODIMP GetCurrentPosition(LONGLONG* pCurrent) override;
    STDMETHODIMP ConvertTimeFormat(LONGLONG* pTarget, const GUID* pTargetFormat, LONGLONG Source,
                                   const GUID* pSourceFormat) override;
    STDMETHODIMP SetPositions(LONGLONG* pCurrent, DWORD CurrentFlags, LONGLONG* pStop,
                              DWORD StopFlags) override;
    STDMETHODIMP GetPositions(LONGLONG* pCurrent, LONGLONG* pStop) override;
    STDMETHODIMP GetAvailable(LONGLONG* pEarliest, LONGLONG* pLatest) override;
    STDMETHODIMP SetRate(double dRate) override;
    STDMETHODIMP GetRate(double* pdRate) override;
    STDMETHODIMP GetPreroll(LONGLONG* pPreroll) override;

    /// IDispatch is there because IMediaPosition extends it: E_NOTIMPL.
    STDMETHODIMP GetTypeInfoCount(UINT* pctinfo) override;
    STDMETHODIMP GetTypeInfo(UINT itinfo, LCID lcid, ITypeInfo** pptinfo) override;
    STDMETHODIMP GetIDsOfNames(REFIID riid, LPOLESTR* rgszNames, UINT cNames, LCID lcid,
                               DISPID* rgdispid) override;
    STDMETHODIMP Invoke(DISPID dispidMember, REFIID riid, LCID lcid, WORD wFlags, DISPPARAMS* pdispparams,
                        VARIANT* pvarResult, EXCEPINFO* pexcepinfo, UINT* puArgErr) override;

    STDMETHODIMP get_Duration(REFTIME* plength) override;
    STDMETHODIMP put_CurrentPosition(REFTIME llTime) override;
    STDMETHODIMP get_CurrentPosition(REFTIME* pllTime) override;
    STDMETHODIMP get_StopTime(REFTIME* pllTime) override;
    STDMETHODIMP put_StopTime(REFTIME llTime) override;
    STDMETHODIMP get_PrerollTime(REFTIME* pllTime) override;
    STDMETHODIMP put_PrerollTime(REFTIME llTime) override;
    STDMETHODIMP put_Rate(double dRate) override;
    STDMETHODIMP get_Rate(double* pdRate) override;
    STDMETHODIMP CanSeekForward(LONG* pCanSeekForward) override;
    STDMETHODIMP CanSeekBackward(LONG* pCanSeekBackward) override;

  private:
    IPin* m_pPin;
};
