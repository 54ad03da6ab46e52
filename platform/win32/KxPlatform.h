// What the control interfaces need of the system: here it has headers of its own for that.
#pragma once

#include <windows.h>

#include <unknwn.h>
#include <vfwmsgs.h>

// Lets __uuidof and IID_PPV_ARGS work with an interface, where the compiler leaves that to headers.
#ifdef __CRT_UUID_DECL
#define KX_BIND_INTERFACE_ID __CRT_UUID_DECL
#else
#define KX_BIND_INTERFACE_ID(...)
#endif
