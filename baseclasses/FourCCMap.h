// The media subtype that stands for a FOURCC.
#pragma once

#include <windows.h>

/// {xxxxxxxx-0000-0010-8000-00AA00389B71} with the FOURCC as its first word. Serves also the subtypes that
/// a system's headers lack, such as I420.
class FOURCCMap : public GUID {
  public:
    explicit constexpr FOURCCMap(DWORD fourcc) : GUID(Subtype(fourcc)) {}

    constexpr DWORD GetFOURCC() const { return Data1; }

  private:
    static constexpr GUID Subtype(DWORD fourcc) {
        return {fourcc, 0x0000, 0x0010, {0x80, 0x00, 0x00, 0xAA, 0x00, 0x38, 0x9B, 0x71}};
    }
};
