// Registration: the class with COM, the filter with the filter mapper, in a category of the module's own.
#include "baseclasses/DllSetup.h"
#include "platform/ComGuard.h"
#include "scenes/IKxSceneDetect.h"
#include "scenes/module/ClassTable.h"

namespace {

constexpr const wchar_t* kCategoryName = L"Tamrak Auxiliary Filters";

// What every module of filters does, and then `step` with the filter mapper. The first failure ends it.
template <typename Step>
HRESULT Register(BOOL isRegistering, Step step) {
    return scenedetect::Guarded([&]() -> HRESULT {
        HRESULT hr = AMovieDllRegisterServer2(isRegistering);
        if (FAILED(hr))
            return hr;
        ComRef<IFilterMapper2> mapper;
        hr = MakeFilterMapper(mapper);
        if (FAILED(hr))
            return hr;
        return step(*mapper);
    });
}

} // namespace

STDAPI DllRegisterServer() {
    return Register(TRUE, [](IFilterMapper2& mapper) -> HRESULT {
        const HRESULT hr =
            mapper.CreateCategory(CLSID_TamrakAuxiliaryFilters, MERIT_DO_NOT_USE, kCategoryName);
        if (FAILED(hr))
            return hr;
        REGFILTER2 record{};
        record.dwVersion = 1;
        record.dwMerit = MERIT_DO_NOT_USE;
        return mapper.RegisterFilter(CLSID_SceneDetectFilter, kFilterName, nullptr,
                                     &CLSID_TamrakAuxiliaryFilters, kFilterName, &record);
    });
}

// Deliberate: the category stays, since other filters may have joined it.
STDAPI DllUnregisterServer() {
    return Register(FALSE, [](IFilterMapper2& mapper) {
        return mapper.UnregisterFilter(&CLSID_TamrakAuxiliaryFilters, kFilterName, CLSID_SceneDetectFilter);
    });
}
