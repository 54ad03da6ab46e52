// Shadow of the Windows header of the same name: the part of DirectShow that the project uses.
#pragma once

#include <windows.h>

#include <amvideo.h>
#include <control.h>
#include <evcode.h>
#include <strmif.h>
#include <uuids.h>
#include <vfwmsgs.h>
