#include "running/run/SinkFilter.h"

namespace scenedetect {
namespace {

constexpr CLSID kSinkClass = {0xB2C9A7F4, 0x51D3, 0x4E0A, {0x86, 0x3C, 0x7E, 0x14, 0xAD, 0x0F, 0x92, 0x58}};

} // namespace

SinkPin::SinkPin(CBaseFilter* filter, CCritSec* lock, HRESULT* phr)
    : CBaseInputPin(nullptr, filter, lock, phr, L"Input") {}

HRESULT SinkPin::CheckMediaType(const CMediaType* type) {
    return *type->Type() == MEDIATYPE_Video ? S_OK : S_FALSE;
}

STDMETHODIMP SinkPin::EndOfStream() {
    m_hasEnded = true;
    return S_OK;
}

SinkFilter::SinkFilter(HRESULT* phr)
    : CBaseFilter(nullptr, nullptr, &m_lock, kSinkClass, phr), m_pin(this, &m_lock, phr) {}

} // namespace scenedetect
