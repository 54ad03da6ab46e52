// The module's entry points for hosts; the linker script in this folder exports these names and no others.
#include "baseclasses/ClassFactory.h"

STDAPI DllGetClassObject(REFCLSID rclsid, REFIID riid, void** ppv) {
    return GetClassObject(rclsid, riid, ppv);
}

STDAPI DllCanUnloadNow() {
    return CanUnloadNow();
}
