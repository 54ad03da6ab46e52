// Shadow of the Windows header of the same name: format blocks of interlaced and MPEG-2 video.
#pragma once

#include <strmif.h>

struct VIDEOINFOHEADER2 {
    RECT rcSource;
    RECT rcTarget;
    DWORD dwBitRate;
    DWORD dwBitErrorRate;
    REFERENCE_TIME AvgTimePerFrame;
    DWORD dwInterlaceFlags;
    DWORD dwCopyProtectFlags;
    DWORD dwPictAspectRatioX;
    DWORD dwPictAspectRatioY;
    DWORD dwControlFlags;
    DWORD dwReserved2;
    BITMAPINFOHEADER bmiHeader;
};
static_assert(sizeof(VIDEOINFOHEADER2) == 112);
static_assert(offsetof(VIDEOINFOHEADER2, AvgTimePerFrame) == 40);
static_assert(offsetof(VIDEOINFOHEADER2, bmiHeader) == 72);

struct MPEG2VIDEOINFO {
    VIDEOINFOHEADER2 hdr;
    DWORD dwStartTimeCode;
    DWORD cbSequenceHeader;
    DWORD dwProfile;
    DWORD dwLevel;
    DWORD dwFlags;
    DWORD dwSequenceHeader[1];
};
static_assert(offsetof(MPEG2VIDEOINFO, dwSequenceHeader) == 132);
