// Registration: the class with COM, the filter with the filter mapper, in a category of the module's own.
#include "baseclasses/ComRef.h"
#include "baseclasses/DllSetup.h"
#include "platform/ComGuard.h"
#include "scenes/IKxSceneDetect.h"
#include "scenes/module/ClassTable.h"

#include <dshow.h>

namespace {

constexpr const wchar_t* kCategoryName = L"Tamrak Auxiliary Filters";

HRESULT MakeMapper(ComRef<IFilterMapper2>& mapper) {
    void* made = nullptr;
    const HRESULT hr =
        CoCreateInstance(CLSID_FilterMapper2, nullptr, CLSCTX_INPROC_SERVER, IID_IFilterMapper2, &made);
    mapper.reset(static_cast<IFilterMapper2*>(made));
    return hr;
}

} // namespace

STDAPI DllRegisterServer() {
    return scenedetect::Guarded([]() -> HRESULT {
        HRESULT hr = AMovieDllRegisterServer2(TRUE);
        if (FAILED(hr))
            return hr;
        ComRef<IFilterMapper2> mapper;
        hr = MakeMapper(mapper);
        if (FAILED(hr))
            return hr;
        hr = mapper->CreateCategory(CLSID_TamrakAuxiliaryFilters, MERIT_DO_NOT_USE, kCategoryName);
        if (FAILED(hr))
            return hr;
        REGFILTER2 record{};
        record.dwVersion = 1;
        record.dwMerit = MERIT_DO_NOT_USE;
        return mapper->RegisterFilter(CLSID_SceneDetectFilter, kFilterName, nullptr,
                                      &CLSID_TamrakAuxiliaryFilters, kFilterName, &record);
    });
}

// Deliberate: the category stays, since other filters may have joined it.
STDAPI DllUnregisterServer() {
    return scenedetect::Guarded([]() -> HRESULT {
        HRESULT hr = AMovieDllRegisterServer2(FALSE);
        if (FAILED(hr))
            return hr;
        ComRef<IFilterMapper2> mapper;
        hr = MakeMapper(mapper);
        if (FAILED(hr))
            return hr;
        return mapper->UnregisterFilter(&CLSID_TamrakAuxiliaryFilters, kFilterName, CLSID_SceneDetectFilter);
    });
}
