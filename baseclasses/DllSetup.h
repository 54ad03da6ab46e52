// Registration of a module's classes as its class table describes them. Windows only.
#pragma once

#include "baseclasses/ComRef.h"

#include <dshow.h>
#include <windows.h>

/// The system's filter mapper. COM must be initialised.
[[nodiscard]] HRESULT MakeFilterMapper(ComRef<IFilterMapper2>& mapper);

/// Registers every class of the table as an in-process server of this module (threading model "Both"), and
/// its setup data, if any, with the filter mapper in the category of filters; or takes all that back. What is
/// not there to be taken back is no error. Stops at the first failure and returns it; nothing is undone then.
/// Initialises COM for its own duration.
STDAPI AMovieDllRegisterServer2(BOOL bRegister);
