// What the control interfaces need of the system: here it has headers of its own for that.
#pragma once

#include <windows.h>

#include <unknwn.h>
#include <vfwmsgs.h>

// Lets __uuidof and IID_PPV_ARGS work with an interface: some compilers take its identifier as an attribute,
// others leave it to a template of their headers.
#ifdef _MSC_VER
#define KX_INTERFACE_ID(text) __declspec(uuid(text))
#else
#define KX_INTERFACE_ID(text)
#endif
#ifdef __CRT_UUID_DECL
#define KX_BIND_INTERFACE_ID(name, id)                                                                       \
    __CRT_UUID_DECL(name, id.Data1, id.Data2, id.Data3, id.Data4[0], id.Data4[1], id.Data4[2], id.Data4[3],  \
                    id.Data4[4], id.Data4[5], id.Data4[6], id.Data4[7])
#else
#define KX_BIND_INTERFACE_ID(name, id)
#endif
