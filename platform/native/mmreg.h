// Shadow of the Windows header of the same name: format blocks of audio media types.
#pragma once

#include <windows.h>

#define WAVE_FORMAT_PCM 0x0001
#define WAVE_FORMAT_MPEG 0x0050
#define WAVE_FORMAT_MPEGLAYER3 0x0055

#pragma pack(push, 1)
struct WAVEFORMATEX {
    WORD wFormatTag;
    WORD nChannels;
    DWORD nSamplesPerSec;
    DWORD nAvgBytesPerSec;
    WORD nBlockAlign;
    WORD wBitsPerSample;
    WORD cbSize;
};

struct MPEG1WAVEFORMAT {
    WAVEFORMATEX wfx;
    WORD fwHeadLayer;
    DWORD dwHeadBitrate;
    WORD fwHeadMode;
    WORD fwHeadModeExt;
    WORD wHeadEmphasis;
    WORD fwHeadFlags;
    DWORD dwPTSLow;
    DWORD dwPTSHigh;
};
#pragma pack(pop)
static_assert(sizeof(WAVEFORMATEX) == 18);
static_assert(sizeof(MPEG1WAVEFORMAT) == 40);
static_assert(offsetof(MPEG1WAVEFORMAT, dwHeadBitrate) == 20);
