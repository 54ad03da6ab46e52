#include "tests/Testing.h"
#include "tests/baseclasses/TestFilters.h"

namespace {

constexpr CLSID kFilterClass = {1, 0, 0, {}};
constexpr CLSID kFailingClass = {2, 0, 0, {}};
constexpr CLSID kThrowingClass = {3, 0, 0, {}};

CUnknown* CALLBACK MakeFilter(LPUNKNOWN outer, HRESULT* phr) {
    return new InPlaceFilter(outer, phr);
}

CUnknown* CALLBACK MakeFailing(LPUNKNOWN outer, HRESULT* phr) {
    *phr = VFW_E_RUNTIME_ERROR;
    return new InPlaceFilter(outer, phr);
}

CUnknown* CALLBACK MakeThrowing(LPUNKNOWN, HRESULT*) {
    throw std::runtime_error("no");
}

int g_loads = 0;

void CALLBACK CountLoads(BOOL loading, const CLSID* clsid) {
    if (*clsid == kFailingClass)
        g_loads += loading ? 1 : 10;
}

ComRef<IClassFactory> Factory(const CLSID& clsid) {
    void* factory = nullptr;
    EXPECT_EQ(GetClassObject(clsid, IID_IClassFactory, &factory), S_OK);
    return ComRef<IClassFactory>(static_cast<IClassFactory*>(factory));
}

bool Exposes(IUnknown* object, REFIID riid) {
    void* found = &found;
    const HRESULT hr = object->QueryInterface(riid, &found);
    if (SUCCEEDED(hr)) {
        static_cast<IUnknown*>(found)->Release();
        return true;
    }
    EXPECT_EQ(hr, E_NOINTERFACE);
    EXPECT_EQ(found, nullptr);
    return false;
}

} // namespace

CFactoryTemplate g_Templates[] = {
    {L"filter", &kFilterClass, MakeFilter, nullptr, nullptr},
    {L"failing", &kFailingClass, MakeFailing, CountLoads, nullptr},
    {L"throwing", &kThrowingClass, MakeThrowing, nullptr, nullptr},
};
int g_cTemplates = 3;

TEST(Interfaces, EachObjectExposesWhatItShould) {
    const IID* const all[] = {&IID_IUnknown,        &IID_IPersist,      &IID_IMediaFilter,
                              &IID_IBaseFilter,     &IID_IPin,          &IID_IMemInputPin,
                              &IID_IQualityControl, &IID_IMediaSeeking, &IID_IMediaPosition,
                              &IID_IReferenceClock};
    Chain chain;
    const struct {
        const char* name;
        IUnknown* object;
        const char* exposed; // one letter for each of `all`
    } cases[] = {
        {"filter", static_cast<IBaseFilter*>(chain.filter), "yyyy------"},
        {"input", static_cast<IPin*>(&chain.filter->In()), "y---yyy---"},
        {"output", static_cast<IPin*>(&chain.filter->Out()), "y---y-yyy-"},
    };
    for (const auto& c : cases) {
        std::string exposed;
        for (const IID* iid : all)
            exposed += Exposes(c.object, *iid) ? 'y' : '-';
        EXPECT_EQ(exposed, c.exposed) << c.name;
        EXPECT_EQ(c.object->QueryInterface(IID_IUnknown, nullptr), E_POINTER) << c.name;
    }
}

TEST(Interfaces, OneIdentityAndOneCountForFilterAndPins) {
    Chain chain;
    IUnknown* pin = static_cast<IPin*>(&chain.filter->Out());
    const auto fromPin = QueryFor<IUnknown>(pin, IID_IUnknown);
    const auto seeking = QueryFor<IMediaSeeking>(pin, IID_IMediaSeeking);
    const auto fromSeeking = QueryFor<IUnknown>(seeking.get(), IID_IUnknown);
    EXPECT_EQ(fromPin, fromSeeking);
    EXPECT_NE(fromPin, QueryFor<IUnknown>(static_cast<IBaseFilter*>(chain.filter), IID_IUnknown));
    EXPECT_EQ(chain.filter->AddRef(), 7u); // three of the chain, three from above, this one
    EXPECT_EQ(pin->Release(), 6u);
}

TEST(Factory, ChecksItsArguments) {
    void* result = &result;
    EXPECT_EQ(GetClassObject(kFilterClass, IID_IClassFactory, nullptr), E_POINTER);
    EXPECT_EQ(GetClassObject(kFilterClass, IID_IBaseFilter, &result), E_NOINTERFACE);
    EXPECT_EQ(result, nullptr);
    EXPECT_EQ(GetClassObject(GUID_NULL, IID_IUnknown, &result), CLASS_E_CLASSNOTAVAILABLE);
    EXPECT_EQ(result, nullptr);

    const auto factory = Factory(kFilterClass);
    EXPECT_EQ(factory->CreateInstance(nullptr, IID_IPin, &result), E_NOINTERFACE);
    EXPECT_EQ(factory->CreateInstance(nullptr, IID_IBaseFilter, nullptr), E_POINTER);
    EXPECT_EQ(Factory(kFailingClass)->CreateInstance(nullptr, IID_IBaseFilter, &result), VFW_E_RUNTIME_ERROR);
    EXPECT_EQ(Factory(kThrowingClass)->CreateInstance(nullptr, IID_IBaseFilter, &result), E_FAIL);
    EXPECT_EQ(result, nullptr);
}

TEST(Factory, InitRoutinesHearOfLoadAndUnload) {
    EXPECT_TRUE(DllEntryPoint(nullptr, DLL_PROCESS_ATTACH, nullptr));
    EXPECT_EQ(g_loads, 1);
    EXPECT_TRUE(DllEntryPoint(nullptr, DLL_PROCESS_DETACH, nullptr));
    EXPECT_EQ(g_loads, 11);
}
