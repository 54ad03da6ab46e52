// The texts and settings by which the module's one class is known to the system.
#pragma once

#include <windows.h>

/// The filter's name: in the registry, in the filter mapper, and of its instance in the category.
inline constexpr const wchar_t* kFilterName = L"Tamrak Scene Detect Filter";
