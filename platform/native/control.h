// Shadow of the Windows header of the same name: the position interface that graphs ask pins for.
#pragma once

#include <strmif.h>

struct ITypeInfo;
struct DISPPARAMS;
struct VARIANT;
struct EXCEPINFO;
using DISPID = LONG;
using LCID = DWORD;

inline constexpr IID IID_IDispatch = {0x00020400, 0, 0, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};
struct IDispatch : IUnknown {
    STDMETHOD(GetTypeInfoCount)(UINT* pctinfo) = 0;
    STDMETHOD(GetTypeInfo)(UINT iTInfo, LCID lcid, ITypeInfo** ppTInfo) = 0;
    STDMETHOD(GetIDsOfNames)(REFIID riid, LPOLESTR* rgszNames, UINT cNames, LCID lcid, DISPID* rgDispId) = 0;
    STDMETHOD(Invoke)
    (DISPID dispIdMember, REFIID riid, LCID lcid, WORD wFlags, DISPPARAMS* pDispParams, VARIANT* pVarResult,
     EXCEPINFO* pExcepInfo, UINT* puArgErr) = 0;
};

inline constexpr IID IID_IMediaPosition = {
    0x56A868B2, 0x0AD4, 0x11CE, {0xB0, 0x3A, 0x00, 0x20, 0xAF, 0x0B, 0xA7, 0x70}};
struct IMediaPosition : IDispatch {
    STDMETHOD(get_Duration)(REFTIME* plength) = 0;
    STDMETHOD(put_CurrentPosition)(REFTIME llTime) = 0;
    STDMETHOD(get_CurrentPosition)(REFTIME* pllTime) = 0;
    STDMETHOD(get_StopTime)(REFTIME* pllTime) = 0;
    STDMETHOD(put_StopTime)(REFTIME llTime) = 0;
    STDMETHOD(get_PrerollTime)(REFTIME* pllTime) = 0;
    STDMETHOD(put_PrerollTime)(REFTIME llTime) = 0;
    STDMETHOD(put_Rate)(double dRate) = 0;
    STDMETHOD(get_Rate)(double* pdRate) = 0;
    STDMETHOD(CanSeekForward)(LONG* pCanSeekForward) = 0;
    STDMETHOD(CanSeekBackward)(LONG* pCanSeekBackward) = 0;
};
