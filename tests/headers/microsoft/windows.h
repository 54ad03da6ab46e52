// As much of the system's headers as the control interfaces need, for compilers of the Microsoft kind.
#pragma once

using BYTE = unsigned char;
using WORD = unsigned short;
using LONG = long;
using ULONG = unsigned long;
using DWORD = unsigned long;
using BOOL = int;
using LONGLONG = long long;
using HRESULT = long;
using LPCWSTR = const wchar_t*;

struct _GUID {
    unsigned long Data1;
    unsigned short Data2;
    unsigned short Data3;
    unsigned char Data4[8];
};
using GUID = _GUID;
using IID = GUID;
using CLSID = GUID;
#define REFIID const IID&

#define STDMETHOD(method) virtual HRESULT __stdcall method

struct __declspec(uuid("00000000-0000-0000-C000-000000000046")) IUnknown {
    STDMETHOD(QueryInterface)(REFIID riid, void** ppv) = 0;
    virtual ULONG __stdcall AddRef() = 0;
    virtual ULONG __stdcall Release() = 0;
};

template <typename Interface>
void** IID_PPV_ARGS_Helper(Interface** ppv) {
    return reinterpret_cast<void**>(ppv);
}
#define IID_PPV_ARGS(ppType) __uuidof(**(ppType)), IID_PPV_ARGS_Helper(ppType)

struct BITMAPINFOHEADER;
