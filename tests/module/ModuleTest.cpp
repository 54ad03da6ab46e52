// The module as a host meets it: loaded by name, asked for the filter, released and unloaded.
#include "tests/SceneStream.h"
#include "tests/Testing.h"
#include "tests/module/LoadedModule.h"

#include <future>

namespace {

class Module : public Test, protected LoadedModule {
  protected:
    void SetUp() override { Load(); }
};

TEST_F(Module, RefusesOtherClassesAndInterfaces) {
    void* result = this;
    EXPECT_EQ(getClassObject(CLSID_SceneDetectFilter, IID_IBaseFilter, &result), E_NOINTERFACE);
    EXPECT_EQ(result, nullptr);
    EXPECT_EQ(getClassObject(IID_IKxSceneDetect, IID_IClassFactory, &result), CLASS_E_CLASSNOTAVAILABLE);
    EXPECT_EQ(getClassObject(IID_IKxSceneDetect, IID_IBaseFilter, &result), E_NOINTERFACE);
    EXPECT_EQ(getClassObject(CLSID_SceneDetectFilter, IID_IUnknown, &result), S_OK);
    static_cast<IUnknown*>(result)->Release();
    EXPECT_EQ(canUnloadNow(), S_OK);
}

TEST_F(Module, StaysWhileAnObjectOrAServerLockLives) {
    auto factory = Factory();
    ASSERT_TRUE(factory);
    EXPECT_EQ(canUnloadNow(), S_FALSE) << "the factory is an object, too";
    auto filter = MakeFilter();
    factory->LockServer(TRUE);
    factory.reset();
    filter.reset();
    EXPECT_EQ(canUnloadNow(), S_FALSE);
    Factory()->LockServer(FALSE);
    EXPECT_EQ(canUnloadNow(), S_OK);
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
    for (const IID& iid : {IID_IBaseFilter, IID_IKxSceneDetect, IID_IKxSceneDetect2, IID_IKxSceneDetectEx,
                           IID_IKxSceneDetectTuning, IID_IKxSceneDetectDistances}) {
        const auto found = QueryFor<IUnknown>(&outer, iid);
        ASSERT_TRUE(found);
        EXPECT_EQ(outer.count, 2u) << "references are the outer object's";
        EXPECT_EQ(QueryFor<IUnknown>(found.get(), IID_IUnknown).get(), &outer);
    }
    EXPECT_EQ(outer.count, 1u);
    outer.inner.reset();
    EXPECT_EQ(canUnloadNow(), S_OK);
}

TEST_F(Module, LetsOutItsEntryPointsOnly) {
    // Things that hosts have, too, and that must not meet the module's.
    for (const char* name : {"_Z14GetClassObjectRK4GUIDS1_PPv", "g_Templates", "_Z12CanUnloadNowv",
                             "_ZN11scenedetect10DebugPrintEPKwz"})
        EXPECT_EQ(library.Find(name), nullptr) << name;
}

// The streaming threads outlive the module that they have been in.
// Futures: the latches of some mingw libraries lose wake-ups.
TEST_F(Module, CanBeLoadedUsedAndUnloadedAgainAndAgain) {
    std::promise<void> allUnloaded;
    const std::shared_future<void> end = allUnloaded.get_future().share();
    std::vector<std::jthread> threads;
    const std::shared_ptr<void> atTheEnd(nullptr, [&](void*) { allUnloaded.set_value(); });
    for (int i = 0; i < 20; ++i) {
        {
            SceneStream stream(MakeFilter());
            stream.scenes->SetDetectionMethod(KxMethodVideo);
            stream.Connect();
            stream.Pause();
            stream.scenes->EnableDetection(TRUE);
            std::promise<void> streamed;
            auto hasStreamed = streamed.get_future();
            threads.emplace_back([&stream, end, streamed = std::move(streamed)]() mutable {
                for (int frame = 0; frame < 5; ++frame)
                    EXPECT_EQ(stream.SendGrey(90), S_OK);
                streamed.set_value();
                end.wait();
            });
            hasStreamed.wait();
            EXPECT_EQ(stream.sink->pin.samples, 5);
        }
        ASSERT_EQ(canUnloadNow(), S_OK);
        library.Close();
        ASSERT_NO_FATAL_FAILURE(Load());
    }
}

} // namespace
