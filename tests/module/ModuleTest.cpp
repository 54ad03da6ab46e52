// The module as a host meets it: loaded by name, asked for the filter, released and unloaded.
#include "baseclasses/ComRef.h"
#include "baseclasses/Unknown.h"
#include "platform/DynamicLibrary.h"
#include "platform/Text.h"
#include "scenes/IKxSceneDetect.h"

#include <dshow.h>
#include <gtest/gtest.h>

namespace scenedetect {
namespace {

class Module : public testing::Test {
  protected:
    void SetUp() override {
        ASSERT_TRUE(m_library.Open(WideFromUtf8(MODULE_PATH).c_str()));
        m_getClassObject = reinterpret_cast<GetClassObjectEntry*>(m_library.Find("DllGetClassObject"));
        m_canUnloadNow = reinterpret_cast<CanUnloadNowEntry*>(m_library.Find("DllCanUnloadNow"));
        ASSERT_TRUE(m_getClassObject && m_canUnloadNow);
        EXPECT_EQ(m_canUnloadNow(), S_OK);
    }

    ComRef<IClassFactory> Factory() {
        void* factory = nullptr;
        EXPECT_EQ(m_getClassObject(CLSID_SceneDetectFilter, IID_IClassFactory, &factory), S_OK);
        return ComRef<IClassFactory>(static_cast<IClassFactory*>(factory));
    }

    using GetClassObjectEntry = HRESULT(REFCLSID, REFIID, void**);
    using CanUnloadNowEntry = HRESULT();

    DynamicLibrary m_library;
    GetClassObjectEntry* m_getClassObject = nullptr;
    CanUnloadNowEntry* m_canUnloadNow = nullptr;
};

TEST_F(Module, RefusesOtherClassesAndInterfaces) {
    void* result = this;
    EXPECT_EQ(m_getClassObject(CLSID_SceneDetectFilter, IID_IBaseFilter, &result), E_NOINTERFACE);
    EXPECT_EQ(result, nullptr);
    EXPECT_EQ(m_getClassObject(IID_IKxSceneDetect, IID_IClassFactory, &result), CLASS_E_CLASSNOTAVAILABLE);
    EXPECT_EQ(m_getClassObject(IID_IKxSceneDetect, IID_IBaseFilter, &result), E_NOINTERFACE);
    EXPECT_EQ(m_getClassObject(CLSID_SceneDetectFilter, IID_IUnknown, &result), S_OK);
    static_cast<IUnknown*>(result)->Release();
    EXPECT_EQ(m_canUnloadNow(), S_OK);
}

TEST_F(Module, StaysWhileAnObjectOrAServerLockLives) {
    auto factory = Factory();
    ASSERT_TRUE(factory);
    EXPECT_EQ(m_canUnloadNow(), S_FALSE) << "the factory is an object, too";
    void* made = nullptr;
    ASSERT_EQ(factory->CreateInstance(nullptr, IID_IBaseFilter, &made), S_OK);
    ComRef<IBaseFilter> filter(static_cast<IBaseFilter*>(made));
    factory->LockServer(TRUE);
    factory.reset();
    filter.reset();
    EXPECT_EQ(m_canUnloadNow(), S_FALSE);
    Factory()->LockServer(FALSE);
    EXPECT_EQ(m_canUnloadNow(), S_OK);
}

TEST_F(Module, TheFilterIsCompleteOnItsOwn) {
    void* made = nullptr;
    ASSERT_EQ(Factory()->CreateInstance(nullptr, IID_IBaseFilter, &made), S_OK);
    const ComRef<IBaseFilter> filter(static_cast<IBaseFilter*>(made));
    CLSID clsid{};
    EXPECT_EQ(filter->GetClassID(&clsid), S_OK);
    EXPECT_TRUE(clsid == CLSID_SceneDetectFilter);
    const auto scenes = QueryFor<IKxSceneDetect2>(filter.get(), IID_IKxSceneDetect2);
    ASSERT_TRUE(scenes);
    ULONG method = 0;
    EXPECT_EQ(scenes->GetDetectionMethod(&method), S_OK);
    EXPECT_EQ(method, ULONG{KxMethodManual});
    for (const wchar_t* id : {L"In", L"Out"}) {
        IPin* pin = nullptr;
        ASSERT_EQ(filter->FindPin(id, &pin), S_OK);
        pin->Release();
    }
}

// An outer object that counts its references and forwards to the filter it aggregates.
class Outer final : public IUnknown {
  public:
    STDMETHODIMP QueryInterface(REFIID riid, void** ppv) override {
        if (riid != IID_IUnknown)
            return inner->QueryInterface(riid, ppv);
        *ppv = this;
        AddRef();
        return S_OK;
    }
    STDMETHODIMP_(ULONG) AddRef() override { return ++count; }
    STDMETHODIMP_(ULONG) Release() override { return --count; }

    ComRef<IUnknown> inner;
    ULONG count = 1;
};

TEST_F(Module, TheFilterCanBeAggregated) {
    Outer outer;
    void* made = this;
    EXPECT_TRUE(FAILED(Factory()->CreateInstance(&outer, IID_IBaseFilter, &made)));
    EXPECT_EQ(made, nullptr) << "an aggregate is handed out as IUnknown only";
    ASSERT_EQ(Factory()->CreateInstance(&outer, IID_IUnknown, &made), S_OK);
    outer.inner.reset(static_cast<IUnknown*>(made));
    {
        const auto scenes = QueryFor<IKxSceneDetect>(&outer, IID_IKxSceneDetect);
        ASSERT_TRUE(scenes);
        EXPECT_EQ(outer.count, 2u) << "references are the outer object's";
        EXPECT_EQ(QueryFor<IUnknown>(scenes.get(), IID_IUnknown).get(), &outer);
    }
    EXPECT_EQ(outer.count, 1u);
    outer.inner.reset();
    EXPECT_EQ(m_canUnloadNow(), S_OK);
}

TEST_F(Module, LetsOutItsEntryPointsOnly) {
    // Things that hosts have, too, and that must not meet the module's.
    for (const char* name : {"_Z14GetClassObjectRK4GUIDS1_PPv", "g_Templates", "_Z12CanUnloadNowv",
                             "_ZN11scenedetect10DebugPrintEPKwz"})
        EXPECT_EQ(m_library.Find(name), nullptr) << name;
}

TEST_F(Module, CanBeLoadedUsedAndUnloadedAgainAndAgain) {
    for (int i = 0; i < 20; ++i) {
        void* made = nullptr;
        ASSERT_EQ(Factory()->CreateInstance(nullptr, IID_IKxSceneDetect, &made), S_OK);
        static_cast<IKxSceneDetect*>(made)->EnableDetection(TRUE);
        static_cast<IKxSceneDetect*>(made)->Release();
        ASSERT_EQ(m_canUnloadNow(), S_OK);
        m_library.Close();
        ASSERT_NO_FATAL_FAILURE(SetUp());
    }
}

} // namespace
} // namespace scenedetect
