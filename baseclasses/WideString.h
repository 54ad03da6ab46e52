// Wide text handed across interfaces: task-memory copies and fixed name fields.
#pragma once

#include <windows.h>

#include <cstddef>

/// A task-memory copy of `text` for the caller to free. E_POINTER, E_OUTOFMEMORY.
HRESULT AMGetWideString(LPCWSTR text, LPWSTR* ppCopy);

/// Copies `text` (null counts as empty) into a field of `size` characters, cut to what fits, always
/// terminated.
void CopyToNameField(WCHAR* field, std::size_t size, LPCWSTR text);
