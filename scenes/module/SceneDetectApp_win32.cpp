// The module's life: from the system's load to its unload.
#include "baseclasses/ClassFactory.h"

namespace {

/// The application object: one instance, constructed when the module is loaded and destroyed after its
/// unload.
class SceneDetectApp {
  public:
    BOOL InitInstance(HINSTANCE instance) {
        m_instance = instance;
        DllEntryPoint(m_instance, DLL_PROCESS_ATTACH, nullptr);
        return TRUE;
    }
    int ExitInstance() {
        DllEntryPoint(m_instance, DLL_PROCESS_DETACH, nullptr);
        return 0;
    }

  private:
    HINSTANCE m_instance = nullptr;
} theApp;

} // namespace

extern "C" BOOL WINAPI DllMain(HINSTANCE instance, DWORD reason, LPVOID /*reserved*/) {
    if (reason == DLL_PROCESS_ATTACH)
        return theApp.InitInstance(instance);
    if (reason == DLL_PROCESS_DETACH)
        theApp.ExitInstance();
    return TRUE;
}
