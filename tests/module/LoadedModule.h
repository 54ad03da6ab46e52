// The module as a host meets it: loaded from its file and asked for the filter.
#pragma once

#include "baseclasses/ComRef.h"
#include "platform/DynamicLibrary.h"
#include "platform/Text.h"
#include "scenes/IKxSceneDetect.h"
#include "tests/Testing.h"

#include <dshow.h>

namespace scenedetect::testing_support {

struct LoadedModule {
    using GetClassObjectEntry = HRESULT STDAPICALLTYPE(REFCLSID, REFIID, void**);
    using PlainEntry = HRESULT STDAPICALLTYPE();

    void Load(const std::wstring& path = WideFromUtf8(MODULE_PATH)) {
        ASSERT_TRUE(library.Open(path));
        getClassObject = reinterpret_cast<GetClassObjectEntry*>(library.Find("DllGetClassObject"));
        canUnloadNow = Entry("DllCanUnloadNow");
        ASSERT_TRUE(getClassObject && canUnloadNow);
        EXPECT_EQ(canUnloadNow(), S_OK);
    }
    PlainEntry* Entry(const char* name) { return reinterpret_cast<PlainEntry*>(library.Find(name)); }

    ComRef<IClassFactory> Factory() {
        void* factory = nullptr;
        EXPECT_EQ(getClassObject(CLSID_SceneDetectFilter, IID_IClassFactory, &factory), S_OK);
        return ComRef<IClassFactory>(static_cast<IClassFactory*>(factory));
    }
    ComRef<IBaseFilter> MakeFilter() {
        void* filter = nullptr;
        EXPECT_EQ(Factory()->CreateInstance(nullptr, IID_IBaseFilter, &filter), S_OK);
        return ComRef<IBaseFilter>(static_cast<IBaseFilter*>(filter));
    }

    DynamicLibrary library;
    GetClassObjectEntry* getClassObject = nullptr;
    PlainEntry* canUnloadNow = nullptr;
};

} // namespace scenedetect::testing_support
