#include "platform/DynamicLibrary.h"

#include <windows.h>

namespace scenedetect {

DynamicLibrary::~DynamicLibrary() {
    Close();
}

bool DynamicLibrary::Open(const std::wstring& name) {
    Close();
    m_handle = LoadLibraryW(name.c_str());
    return IsOpen();
}

bool DynamicLibrary::IsOpen() const {
    return m_handle != nullptr;
}

void* DynamicLibrary::Find(const char* name) const {
    return IsOpen() ? reinterpret_cast<void*>(GetProcAddress(static_cast<HMODULE>(m_handle), name)) : nullptr;
}

void DynamicLibrary::Close() {
    if (IsOpen())
        FreeLibrary(static_cast<HMODULE>(m_handle));
    m_handle = nullptr;
}

} // namespace scenedetect
