// Short forms of what every client of COM does: begin, create, ask for an interface.
#pragma once

#include "baseclasses/ComRef.h"
#include "running/detection/DetectionCalls.h"

#include <windows.h>

#include <objbase.h>
#include <string>

namespace scenedetect {

/// COM for the calling thread, as long as the object lives. No window, hence no apartment.
class ComLibrary {
  public:
    ComLibrary() { Require(CoInitializeEx(nullptr, COINIT_MULTITHREADED), "COM can't be started"); }
    ~ComLibrary() { CoUninitialize(); }
    ComLibrary(const ComLibrary&) = delete;
    ComLibrary& operator=(const ComLibrary&) = delete;
};

/// A new object of the system's. HostError when it can't be made; `what` names it.
template <class Interface>
[[nodiscard]] ComRef<Interface> Create(REFCLSID clsid, REFIID iid, const std::string& what) {
    void* object = nullptr;
    Require(CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, iid, &object), what + " can't be made");
    return ComRef<Interface>(static_cast<Interface*>(object));
}

/// The object's interface; HostError when it has none.
template <class Interface>
[[nodiscard]] ComRef<Interface> As(IUnknown* object, REFIID iid, const std::string& what) {
    auto found = QueryFor<Interface>(object, iid);
    Require(found ? S_OK : E_NOINTERFACE, what + " lacks an interface");
    return found;
}

} // namespace scenedetect
