#include "hosts/graph/SceneDetectModule.h"

#include "hosts/graph/Com.h"
#include "platform/SystemError.h"
#include "platform/Text.h"
#include "reading/base/FileFacts.h"
#include "reading/base/HostError.h"
#include "scenes/IKxSceneDetect.h"

namespace scenedetect {
namespace {

using GetClassObject = HRESULT(STDAPICALLTYPE*)(REFCLSID, REFIID, void**);

constexpr const char* kFilterName = "the scene detect filter";

} // namespace

SceneDetectModule::SceneDetectModule(const std::string& path) : m_path(path) {
    // Only a whole path is taken as it is; a mere name would be looked for in the system's folders.
    if (!path.empty() && !m_library.Open(WholePath(path).wstring()))
        throw HostError(path + ": cannot be loaded: " + LastSystemErrorClause());
}

ComRef<IBaseFilter> SceneDetectModule::MakeFilter() const {
    void* made = nullptr;
    if (m_path.empty()) {
        const HRESULT hr =
            CoCreateInstance(CLSID_SceneDetectFilter, nullptr, CLSCTX_INPROC_SERVER, IID_IBaseFilter, &made);
        if (hr == REGDB_E_CLASSNOTREG)
            throw HostError(std::string(kFilterName) +
                            " is not registered: run regsvr32 KxSceneDetect2.ax, or use --module FILE");
        Require(hr, std::string(kFilterName) + " can't be made");
        return ComRef<IBaseFilter>(static_cast<IBaseFilter*>(made));
    }
    // What CoCreateInstance does, without the registry.
    void* const entry = m_library.Find("DllGetClassObject");
    if (!entry)
        throw HostError(m_path + ": is not a module of filters");
    void* factory = nullptr;
    Require(reinterpret_cast<GetClassObject>(entry)(CLSID_SceneDetectFilter, IID_IClassFactory, &factory),
            m_path + ": does not have " + kFilterName);
    const ComRef<IClassFactory> held(static_cast<IClassFactory*>(factory));
    Require(held->CreateInstance(nullptr, IID_IBaseFilter, &made),
            std::string(kFilterName) + " can't be made");
    return ComRef<IBaseFilter>(static_cast<IBaseFilter*>(made));
}

} // namespace scenedetect
