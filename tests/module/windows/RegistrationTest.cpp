// Registration as an installer does it, and what the system then knows. Changes the registry: the test run
// gives this program a Wine prefix of its own.
#include "tests/TempFolder.h"
#include "tests/Testing.h"
#include "tests/module/LoadedModule.h"

namespace {

constexpr const wchar_t* kFilterName = L"Tamrak Scene Detect Filter";
constexpr const wchar_t* kClassKey = L"CLSID\\{54702E50-7AC5-4D09-AF00-C30084627A5F}";
constexpr const wchar_t* kServerKey = L"CLSID\\{54702E50-7AC5-4D09-AF00-C30084627A5F}\\InprocServer32";

/// A text of the registry's classes; empty when there is none.
std::wstring Registered(const wchar_t* key, const wchar_t* value = nullptr) {
    wchar_t text[1024];
    DWORD bytes = sizeof text;
    const LSTATUS status = RegGetValueW(HKEY_CLASSES_ROOT, key, value, RRF_RT_REG_SZ, nullptr, text, &bytes);
    return status == ERROR_SUCCESS ? text : L"";
}

template <typename Interface>
ComRef<Interface> Make(const CLSID& clsid, const IID& iid) {
    void* made = nullptr;
    EXPECT_EQ(CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, iid, &made), S_OK);
    return ComRef<Interface>(static_cast<Interface*>(made));
}

std::wstring NameOf(IMoniker& moniker) {
    void* made = nullptr;
    EXPECT_EQ(moniker.BindToStorage(nullptr, nullptr, IID_IPropertyBag, &made), S_OK);
    const ComRef<IPropertyBag> bag(static_cast<IPropertyBag*>(made));
    VARIANT value{};
    if (!bag || bag->Read(L"FriendlyName", &value, nullptr) != S_OK)
        return L"";
    const std::wstring name = value.bstrVal;
    VariantClear(&value);
    return name;
}

/// The entries of a category that bear the name.
std::vector<ComRef<IMoniker>> Listed(const CLSID& category, const std::wstring& name) {
    const auto devices = Make<ICreateDevEnum>(CLSID_SystemDeviceEnum, IID_ICreateDevEnum);
    IEnumMoniker* raw = nullptr;
    const HRESULT hr = devices->CreateClassEnumerator(category, &raw, 0);
    EXPECT_EQ(hr, raw ? S_OK : S_FALSE) << "an empty category has no enumerator";
    const ComRef<IEnumMoniker> monikers(raw);
    std::vector<ComRef<IMoniker>> listed;
    IMoniker* next = nullptr;
    while (monikers && monikers->Next(1, &next, nullptr) == S_OK) {
        ComRef<IMoniker> moniker(next);
        if (NameOf(*moniker) == name)
            listed.push_back(std::move(moniker));
    }
    return listed;
}

class Registration : public Test {
  protected:
    void SetUp() override {
        ASSERT_TRUE(SUCCEEDED(CoInitializeEx(nullptr, COINIT_MULTITHREADED)));
        const auto folder = m_folder / std::filesystem::path(u8"Szenen \u00e4\u65e5 1");
        std::filesystem::create_directory(folder);
        std::filesystem::copy_file(MODULE_PATH, folder / "KxSceneDetect2.ax");
        m_path = Wide(folder / "KxSceneDetect2.ax");
    }
    void TearDown() override { CoUninitialize(); }

    /// Runs the system's program on the module; its exit code.
    DWORD Regsvr32(const std::wstring& options) {
        std::wstring command = L"regsvr32.exe /s " + options + L" \"" + m_path + L"\"";
        STARTUPINFOW start{};
        start.cb = sizeof start;
        PROCESS_INFORMATION process{};
        DWORD code = ~DWORD{0};
        EXPECT_TRUE(CreateProcessW(nullptr, command.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr,
                                   &start, &process));
        WaitForSingleObject(process.hProcess, INFINITE);
        GetExitCodeProcess(process.hProcess, &code);
        CloseHandle(process.hThread);
        CloseHandle(process.hProcess);
        return code;
    }

    const TempFolder m_folder;
    std::wstring m_path;
};

TEST_F(Registration, TellsTheSystemAllAndTakesItBack) {
    for (int round = 0; round < 2; ++round) {
        SCOPED_TRACE(round);
        ASSERT_EQ(Regsvr32(L""), 0u);
        EXPECT_EQ(Registered(kClassKey), kFilterName);
        EXPECT_EQ(Registered(kServerKey), m_path);
        EXPECT_EQ(Registered(kServerKey, L"ThreadingModel"), L"Both");
        EXPECT_EQ(Listed(CLSID_LegacyAmFilterCategory, kFilterName).size(), 1u);
        EXPECT_EQ(Listed(CLSID_TamrakAuxiliaryFilters, kFilterName).size(), 1u);

        ASSERT_EQ(Regsvr32(L"/u"), 0u);
        EXPECT_EQ(Registered(kClassKey), L"");
        EXPECT_EQ(Registered(kServerKey), L"");
        EXPECT_TRUE(Listed(CLSID_LegacyAmFilterCategory, kFilterName).empty());
        EXPECT_TRUE(Listed(CLSID_TamrakAuxiliaryFilters, kFilterName).empty());
        EXPECT_EQ(Listed(CLSID_ActiveMovieCategories, L"Tamrak Auxiliary Filters").size(), 1u) << "stays";
    }
}

TEST_F(Registration, TheFilterIsBoundFromItsCategoryAndByItsClass) {
    ASSERT_EQ(Regsvr32(L""), 0u);
    {
        const auto listed = Listed(CLSID_TamrakAuxiliaryFilters, kFilterName);
        ASSERT_EQ(listed.size(), 1u);
        void* bound = nullptr;
        ASSERT_EQ(listed[0]->BindToObject(nullptr, nullptr, IID_IBaseFilter, &bound), S_OK);
        const ComRef<IBaseFilter> filter(static_cast<IBaseFilter*>(bound));
        CLSID clsid{};
        EXPECT_EQ(filter->GetClassID(&clsid), S_OK);
        EXPECT_TRUE(clsid == CLSID_SceneDetectFilter);
        EXPECT_TRUE(Make<IKxSceneDetect>(CLSID_SceneDetectFilter, IID_IKxSceneDetect));
        EXPECT_NE(GetModuleHandleW(m_path.c_str()), nullptr);
    }
    CoFreeUnusedLibrariesEx(0, 0);
    EXPECT_EQ(GetModuleHandleW(m_path.c_str()), nullptr) << "nothing of the module is in use any more";
    EXPECT_EQ(Regsvr32(L"/u"), 0u);
}

TEST_F(Registration, WhatIsNotThereCannotBeTakenBack) {
    LoadedModule module;
    ASSERT_NO_FATAL_FAILURE(module.Load(m_path));
    ASSERT_EQ(module.Entry("DllRegisterServer")(), S_OK);
    EXPECT_EQ(module.Entry("DllRegisterServer")(), S_OK) << "over what is there";
    ASSERT_EQ(module.Entry("DllUnregisterServer")(), S_OK);
    const auto mapper = Make<IFilterMapper2>(CLSID_FilterMapper2, IID_IFilterMapper2);
    const HRESULT ofMapper =
        mapper->UnregisterFilter(&CLSID_TamrakAuxiliaryFilters, kFilterName, CLSID_SceneDetectFilter);
    EXPECT_TRUE(FAILED(ofMapper));
    EXPECT_EQ(module.Entry("DllUnregisterServer")(), ofMapper);
}

} // namespace
