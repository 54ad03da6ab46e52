#include "platform/DynamicLibrary.h"

#include "platform/Text.h"

#include <dlfcn.h>

namespace scenedetect {

DynamicLibrary::~DynamicLibrary() {
    Close();
}

bool DynamicLibrary::Open(const std::wstring& name) {
    Close();
    m_handle = dlopen(Utf8FromWide(name).c_str(), RTLD_NOW | RTLD_LOCAL);
    return IsOpen();
}

bool DynamicLibrary::IsOpen() const {
    return m_handle != nullptr;
}

void* DynamicLibrary::Find(const char* name) const {
    return IsOpen() ? dlsym(m_handle, name) : nullptr;
}

void DynamicLibrary::Close() {
    if (IsOpen())
        dlclose(m_handle);
    m_handle = nullptr;
}

} // namespace scenedetect
