// The records in which a module describes its filters and their pins for registration.
#pragma once

#include <windows.h>

struct AMOVIESETUP_MEDIATYPE {
    const CLSID* clsMajorType;
    const CLSID* clsMinorType;
};

struct AMOVIESETUP_PIN {
    LPCWSTR strName;
    BOOL bRendered;
    BOOL bOutput;
    BOOL bZero;
    BOOL bMany;
    const CLSID* clsConnectsToFilter;
    LPCWSTR strConnectsToPin;
    UINT nMediaTypes;
    const AMOVIESETUP_MEDIATYPE* lpMediaType;
};

struct AMOVIESETUP_FILTER {
    const CLSID* clsID;
    LPCWSTR strName;
    DWORD dwMerit;
    UINT nPins;
    const AMOVIESETUP_PIN* lpPin;
};
