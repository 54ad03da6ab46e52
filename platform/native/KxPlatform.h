// What the control interfaces need of the system. Installed, the headers below are part of this one.
#pragma once

#include <windows.h>

#include <amvideo.h>
#include <control.h>
#include <dvdmedia.h>
#include <evcode.h>
#include <strmif.h>
#include <uuids.h>
#include <vfwmsgs.h>

#define KX_INTERFACE_ID(text)
#define KX_BIND_INTERFACE_ID(name, id)
