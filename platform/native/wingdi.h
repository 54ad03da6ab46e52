// Shadow of the Windows header of the same name: device bitmaps and palettes. There is no such device here: every
// operation fails as the system's own does without one.
#pragma once

#include <windows.h>

using HGDIOBJ = void*;
using HBITMAP = struct HBITMAP__*;
using HDC = struct HDC__*;
using HPALETTE = struct HPALETTE__*;

struct BITMAP {
    LONG bmType;
    LONG bmWidth;
    LONG bmHeight;
    LONG bmWidthBytes;
    WORD bmPlanes;
    WORD bmBitsPixel;
    LPVOID bmBits;
};

struct BITMAPINFO {
    BITMAPINFOHEADER bmiHeader;
    RGBQUAD bmiColors[1];
};

struct PALETTEENTRY {
    BYTE peRed;
    BYTE peGreen;
    BYTE peBlue;
    BYTE peFlags;
};

struct LOGPALETTE {
    WORD palVersion;
    WORD palNumEntries;
    PALETTEENTRY palPalEntry[1];
};

#define CBM_INIT 4
#define DIB_RGB_COLORS 0
#define DIB_PAL_COLORS 1
#define GDI_ERROR 0xFFFFFFFFu
#define NUMCOLORS 24
#define PC_NOCOLLAPSE 0x04
#define RASTERCAPS 38
#define RC_PALETTE 0x0100
#define SIZEPALETTE 104
#define SYSPAL_ERROR 0
#define SYSPAL_STATIC 1
#define SYSPAL_NOSTATIC 2

inline int GetObjectW(HGDIOBJ /*object*/, int /*bytes*/, LPVOID /*target*/) {
    return 0;
}
inline BOOL DeleteObject(HGDIOBJ /*object*/) {
    return FALSE;
}
inline int GetDeviceCaps(HDC /*dc*/, int /*index*/) {
    return 0;
}
inline int GetDIBits(HDC /*dc*/, HBITMAP /*bitmap*/, UINT /*start*/, UINT /*lines*/, LPVOID /*bits*/,
                     BITMAPINFO* /*info*/, UINT /*usage*/) {
    return 0;
}
inline HBITMAP CreateDIBitmap(HDC /*dc*/, const BITMAPINFOHEADER* /*header*/, DWORD /*init*/,
                              const void* /*bits*/, const BITMAPINFO* /*info*/, UINT /*usage*/) {
    return nullptr;
}
inline HPALETTE CreatePalette(const LOGPALETTE* /*palette*/) {
    return nullptr;
}
inline BOOL ResizePalette(HPALETTE /*palette*/, UINT /*count*/) {
    return FALSE;
}
inline UINT SetPaletteEntries(HPALETTE /*palette*/, UINT /*start*/, UINT /*count*/,
                              const PALETTEENTRY* /*entries*/) {
    return 0;
}
inline HPALETTE SelectPalette(HDC /*dc*/, HPALETTE /*palette*/, BOOL /*background*/) {
    return nullptr;
}
inline UINT RealizePalette(HDC /*dc*/) {
    return GDI_ERROR;
}
inline UINT SetSystemPaletteUse(HDC /*dc*/, UINT /*use*/) {
    return SYSPAL_ERROR;
}
inline UINT GetSystemPaletteEntries(HDC /*dc*/, UINT /*start*/, UINT /*count*/, PALETTEENTRY* /*entries*/) {
    return 0;
}
