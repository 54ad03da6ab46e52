// The module's entry points for hosts; the linker script beside this file lets out these names and no other.
#include "baseclasses/ClassFactory.h"

STDAPI DllGetClassObject(REFCLSID rclsid, REFIID riid, void** ppv) {
    return GetClassObject(rclsid, riid, ppv);
}

STDAPI DllCanUnloadNow() {
    return CanUnloadNow();
}
