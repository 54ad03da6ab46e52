// Shadow of the Windows header of the same name: format blocks of video media types.
#pragma once

#include <strmif.h>

struct VIDEOINFOHEADER {
    RECT rcSource;
    RECT rcTarget;
    DWORD dwBitRate;
    DWORD dwBitErrorRate;
    REFERENCE_TIME AvgTimePerFrame;
    BITMAPINFOHEADER bmiHeader;
};
static_assert(sizeof(VIDEOINFOHEADER) == 88);
static_assert(offsetof(VIDEOINFOHEADER, AvgTimePerFrame) == 40);
static_assert(offsetof(VIDEOINFOHEADER, bmiHeader) == 48);

struct MPEG1VIDEOINFO {
    VIDEOINFOHEADER hdr;
    DWORD dwStartTimeCode;
    DWORD cbSequenceHeader;
    BYTE bSequenceHeader[1];
};
static_assert(offsetof(MPEG1VIDEOINFO, bSequenceHeader) == 96);
