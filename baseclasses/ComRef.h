// Scoped references to COM objects.
#pragma once

#include <windows.h>

#include <memory>

struct ReleaseComReference {
    template <class Interface>
    void operator()(Interface* object) const {
        object->Release();
    }
};

/// One reference, released with its holder. Constructed from a pointer it takes that reference over.
template <class Interface>
using ComRef = std::unique_ptr<Interface, ReleaseComReference>;

/// The named interface of an object with a reference of its own, or none.
template <class Interface>
[[nodiscard]] ComRef<Interface> QueryFor(IUnknown* object, REFIID riid) {
    void* found = nullptr;
    if (FAILED(object->QueryInterface(riid, &found)))
        return nullptr;
    return ComRef<Interface>(static_cast<Interface*>(found));
}
