// Shadow of the Windows header of the same name: the base types, COM core and GDI records that the
// project uses, with the sizes they have on 64-bit Windows. On the include path only off Windows.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>

using BYTE = std::uint8_t;
using WORD = std::uint16_t;
using DWORD = std::uint32_t;
using LONG = std::int32_t;
using ULONG = std::uint32_t;
using UINT = std::uint32_t;
using INT = std::int32_t;
using BOOL = std::int32_t;
using HRESULT = std::int32_t;
using LONGLONG = std::int64_t;
using ULONGLONG = std::uint64_t;
using DWORD_PTR = std::uintptr_t;
using UINT_PTR = std::uintptr_t;
using LONG_PTR = std::intptr_t;
using WCHAR = wchar_t;
using OLECHAR = WCHAR;
using LPWSTR = WCHAR*;
using LPCWSTR = const WCHAR*;
using LPOLESTR = OLECHAR*;
using LPCOLESTR = const OLECHAR*;
using TCHAR = WCHAR;
using LPCTSTR = const TCHAR*;
using LPVOID = void*;
using COLORREF = DWORD;
using HANDLE = void*;
using HWND = struct HWND__*;
using HINSTANCE = struct HINSTANCE__*;
using HMODULE = HINSTANCE;

#ifndef FALSE
#define FALSE 0
#define TRUE 1
#endif

#define WINAPI
#define CALLBACK
#define STDMETHODCALLTYPE
#define STDAPICALLTYPE
#define STDMETHOD(method) virtual HRESULT STDMETHODCALLTYPE method
#define STDMETHOD_(type, method) virtual type STDMETHODCALLTYPE method
#define STDMETHODIMP HRESULT STDMETHODCALLTYPE
#define STDMETHODIMP_(type) type STDMETHODCALLTYPE
#define STDAPI extern "C" HRESULT STDAPICALLTYPE
#define PURE = 0
#define THIS_
#define THIS void
#define __RPC_FAR

// HRESULT values are written as the unsigned numbers they are documented as.
#define SCENEDETECT_HRESULT(value) static_cast<HRESULT>(value##u)
#define S_OK SCENEDETECT_HRESULT(0x00000000)
#define S_FALSE SCENEDETECT_HRESULT(0x00000001)
#define NOERROR S_OK
#define E_NOTIMPL SCENEDETECT_HRESULT(0x80004001)
#define E_NOINTERFACE SCENEDETECT_HRESULT(0x80004002)
#define E_POINTER SCENEDETECT_HRESULT(0x80004003)
#define E_ABORT SCENEDETECT_HRESULT(0x80004004)
#define E_FAIL SCENEDETECT_HRESULT(0x80004005)
#define E_UNEXPECTED SCENEDETECT_HRESULT(0x8000FFFF)
#define E_OUTOFMEMORY SCENEDETECT_HRESULT(0x8007000E)
#define E_INVALIDARG SCENEDETECT_HRESULT(0x80070057)
#define CLASS_E_NOAGGREGATION SCENEDETECT_HRESULT(0x80040110)
#define CLASS_E_CLASSNOTAVAILABLE SCENEDETECT_HRESULT(0x80040111)
#define SUCCEEDED(hr) (static_cast<HRESULT>(hr) >= 0)
#define FAILED(hr) (static_cast<HRESULT>(hr) < 0)

#define INFINITE 0xFFFFFFFFu
#define TEXT(text) L##text

#define DLL_PROCESS_DETACH 0
#define DLL_PROCESS_ATTACH 1

struct GUID {
    DWORD Data1;
    WORD Data2;
    WORD Data3;
    BYTE Data4[8];
};
using IID = GUID;
using CLSID = GUID;
using REFGUID = const GUID&;
using REFIID = const IID&;
using REFCLSID = const CLSID&;

inline bool IsEqualGUID(REFGUID a, REFGUID b) {
    return std::memcmp(&a, &b, sizeof(GUID)) == 0;
}
inline bool IsEqualIID(REFIID a, REFIID b) {
    return IsEqualGUID(a, b);
}
inline bool IsEqualCLSID(REFCLSID a, REFCLSID b) {
    return IsEqualGUID(a, b);
}
inline bool operator==(REFGUID a, REFGUID b) {
    return IsEqualGUID(a, b);
}

inline constexpr GUID GUID_NULL = {0, 0, 0, {0, 0, 0, 0, 0, 0, 0, 0}};
inline constexpr IID IID_IUnknown = {0x00000000, 0x0000, 0x0000, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};
inline constexpr IID IID_IClassFactory = {0x00000001, 0x0000, 0x0000, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};

struct IUnknown {
    STDMETHOD(QueryInterface)(REFIID riid, void** ppv) = 0;
    STDMETHOD_(ULONG, AddRef)() = 0;
    STDMETHOD_(ULONG, Release)() = 0;

  protected:
    ~IUnknown() = default;
};
using LPUNKNOWN = IUnknown*;

struct IClassFactory : IUnknown {
    STDMETHOD(CreateInstance)(IUnknown* outer, REFIID riid, void** ppv) = 0;
    STDMETHOD(LockServer)(BOOL lock) = 0;

  protected:
    ~IClassFactory() = default;
};

// What a module of classes lets out.
STDAPI DllGetClassObject(REFCLSID rclsid, REFIID riid, void** ppv);
STDAPI DllCanUnloadNow();

// Task memory: what one side of an interface allocates and the other frees.
inline void* CoTaskMemAlloc(std::size_t bytes) {
    return std::malloc(bytes);
}
inline void CoTaskMemFree(void* memory) {
    std::free(memory);
}

struct RECT {
    LONG left;
    LONG top;
    LONG right;
    LONG bottom;
};

struct RGBQUAD {
    BYTE rgbBlue;
    BYTE rgbGreen;
    BYTE rgbRed;
    BYTE rgbReserved;
};

struct BITMAPINFOHEADER {
    DWORD biSize;
    LONG biWidth;
    LONG biHeight;
    WORD biPlanes;
    WORD biBitCount;
    DWORD biCompression;
    DWORD biSizeImage;
    LONG biXPelsPerMeter;
    LONG biYPelsPerMeter;
    DWORD biClrUsed;
    DWORD biClrImportant;
};
static_assert(sizeof(BITMAPINFOHEADER) == 40);

#pragma pack(push, 2)
struct BITMAPFILEHEADER {
    WORD bfType;
    DWORD bfSize;
    WORD bfReserved1;
    WORD bfReserved2;
    DWORD bfOffBits;
};
#pragma pack(pop)
static_assert(sizeof(BITMAPFILEHEADER) == 14);

#define BI_RGB 0u
#define BI_RLE8 1u
#define BI_RLE4 2u
#define BI_BITFIELDS 3u

#define RGB(r, g, b)                                                                                         \
    (static_cast<COLORREF>(static_cast<BYTE>(r)) | (static_cast<COLORREF>(static_cast<BYTE>(g)) << 8) |      \
     (static_cast<COLORREF>(static_cast<BYTE>(b)) << 16))
#define GetRValue(colour) static_cast<BYTE>(colour)
#define GetGValue(colour) static_cast<BYTE>((colour) >> 8)
#define GetBValue(colour) static_cast<BYTE>((colour) >> 16)

#define MAKEFOURCC(a, b, c, d)                                                                               \
    (static_cast<DWORD>(static_cast<BYTE>(a)) | (static_cast<DWORD>(static_cast<BYTE>(b)) << 8) |            \
     (static_cast<DWORD>(static_cast<BYTE>(c)) << 16) | (static_cast<DWORD>(static_cast<BYTE>(d)) << 24))
