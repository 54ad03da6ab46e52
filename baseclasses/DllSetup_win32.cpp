#include "baseclasses/DllSetup.h"

#include "baseclasses/ClassFactory.h"
#include "platform/ComGuard.h"

#include <dshow.h>

#include <span>
#include <string>

namespace {

// What taking back something that is not there gives, from the registry as from the mapper.
constexpr HRESULT kNotThere = HRESULT_FROM_WIN32(ERROR_FILE_NOT_FOUND);

std::span<const CFactoryTemplate> ClassTable() {
    return {g_Templates, static_cast<std::size_t>(g_cTemplates)};
}

std::wstring ClassKey(REFCLSID clsid) {
    constexpr int kGuidTextLength = 39; // with the terminator
    wchar_t text[kGuidTextLength] = {};
    StringFromGUID2(clsid, text, kGuidTextLength);
    return std::wstring(L"CLSID\\") + text;
}

HRESULT ModulePath(std::wstring& path) {
    // The longest path of the system: a truncated name would be registered.
    path.resize(UNICODE_STRING_MAX_CHARS);
    const DWORD length = GetModuleFileNameW(g_hInst, path.data(), static_cast<DWORD>(path.size()));
    if (length == 0 || length == path.size())
        return HRESULT_FROM_WIN32(length == 0 ? GetLastError() : ERROR_INSUFFICIENT_BUFFER);
    path.resize(length);
    return S_OK;
}

HRESULT SetText(const std::wstring& key, const wchar_t* value, const std::wstring& text) {
    const auto bytes = static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t));
    const LSTATUS status =
        RegSetKeyValueW(HKEY_CLASSES_ROOT, key.c_str(), value, REG_SZ, text.c_str(), bytes);
    return HRESULT_FROM_WIN32(static_cast<DWORD>(status));
}

HRESULT RegisterServer(const CFactoryTemplate& entry, const std::wstring& modulePath) {
    const std::wstring key = ClassKey(*entry.m_ClsID);
    const std::wstring serverKey = key + L"\\InprocServer32";
    HRESULT hr = SetText(key, nullptr, entry.m_Name);
    if (SUCCEEDED(hr))
        hr = SetText(serverKey, nullptr, modulePath);
    if (SUCCEEDED(hr))
        hr = SetText(serverKey, L"ThreadingModel", L"Both");
    return hr;
}

HRESULT UnregisterServer(const CFactoryTemplate& entry) {
    const LSTATUS status = RegDeleteTreeW(HKEY_CLASSES_ROOT, ClassKey(*entry.m_ClsID).c_str());
    const HRESULT hr = HRESULT_FROM_WIN32(static_cast<DWORD>(status));
    return hr == kNotThere ? S_OK : hr;
}

HRESULT RegisterServers() {
    std::wstring path;
    HRESULT hr = ModulePath(path);
    for (const CFactoryTemplate& entry : ClassTable())
        if (SUCCEEDED(hr))
            hr = RegisterServer(entry, path);
    return hr;
}

HRESULT UnregisterServers() {
    HRESULT hr = S_OK;
    for (const CFactoryTemplate& entry : ClassTable())
        if (SUCCEEDED(hr))
            hr = UnregisterServer(entry);
    return hr;
}

// In the category of all filters, without a name of the instance's own.
HRESULT RegisterWithMapper(IFilterMapper2& mapper, const AMOVIESETUP_FILTER& setup) {
    static_assert(sizeof(AMOVIESETUP_PIN) == sizeof(REGFILTERPINS), "two names of one record");
    REGFILTER2 record{};
    record.dwVersion = 1;
    record.dwMerit = setup.dwMerit;
    record.cPins = setup.nPins;
    record.rgPins = reinterpret_cast<const REGFILTERPINS*>(setup.lpPin);
    return mapper.RegisterFilter(*setup.clsID, setup.strName, nullptr, nullptr, nullptr, &record);
}

HRESULT UpdateMapper(bool isRegistering) {
    ComRef<IFilterMapper2> mapper;
    HRESULT hr = MakeFilterMapper(mapper);
    if (FAILED(hr))
        return hr;
    for (const CFactoryTemplate& entry : ClassTable()) {
        const AMOVIESETUP_FILTER* setup = entry.m_pAMovieSetup_Filter;
        if (!setup || FAILED(hr))
            continue;
        // Registering too: what an earlier version left must not stay beside the new record.
        hr = mapper->UnregisterFilter(nullptr, nullptr, *setup->clsID);
        if (hr == kNotThere)
            hr = S_OK;
        if (isRegistering && SUCCEEDED(hr))
            hr = RegisterWithMapper(*mapper, *setup);
    }
    return hr;
}

} // namespace

HRESULT MakeFilterMapper(ComRef<IFilterMapper2>& mapper) {
    void* made = nullptr;
    const HRESULT hr =
        CoCreateInstance(CLSID_FilterMapper2, nullptr, CLSCTX_INPROC_SERVER, IID_IFilterMapper2, &made);
    mapper.reset(static_cast<IFilterMapper2*>(made));
    return hr;
}

STDAPI AMovieDllRegisterServer2(BOOL bRegister) {
    return scenedetect::Guarded([&]() -> HRESULT {
        // A class is known to COM for as long as the mapper knows it.
        if (bRegister) {
            const HRESULT hr = RegisterServers();
            if (FAILED(hr))
                return hr;
        }
        const HRESULT initialized = CoInitialize(nullptr);
        HRESULT hr = UpdateMapper(bRegister != FALSE);
        if (SUCCEEDED(initialized))
            CoUninitialize();
        if (!bRegister && SUCCEEDED(hr))
            hr = UnregisterServers();
        return hr;
    });
}
