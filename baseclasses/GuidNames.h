// Media-type identifiers by the names of their constants, for messages.
#pragma once

#include <windows.h>

/// `GuidNames[guid]` is "MEDIASUBTYPE_YUY2", "MEDIATYPE_Video", ... or, for an identifier that is not in the
/// table, "Unknown GUID Name". The text is static.
class CGuidNameList {
  public:
    const char* operator[](const GUID& guid) const;
};

inline constexpr CGuidNameList GuidNames;
