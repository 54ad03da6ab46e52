#include "baseclasses/WideString.h"

#include <algorithm>
#include <string_view>

HRESULT AMGetWideString(LPCWSTR text, LPWSTR* ppCopy) {
    if (!text || !ppCopy)
        return E_POINTER;
    const std::basic_string_view<WCHAR> source(text);
    *ppCopy = static_cast<LPWSTR>(CoTaskMemAlloc((source.size() + 1) * sizeof(WCHAR)));
    if (!*ppCopy)
        return E_OUTOFMEMORY;
    *std::copy(source.begin(), source.end(), *ppCopy) = 0;
    return S_OK;
}

void CopyToNameField(WCHAR* field, std::size_t size, LPCWSTR text) {
    const std::basic_string_view<WCHAR> source(text ? text : L"");
    *std::copy_n(source.begin(), std::min(source.size(), size - 1), field) = 0;
}
