#include "hosts/graph/MarkFilter.h"

#include <algorithm>

namespace scenedetect {
namespace {

constexpr CLSID kMarkClass = {0x3D6E8A11, 0x7C52, 0x4B0E, {0xA4, 0x19, 0x62, 0xF0, 0x1B, 0x8D, 0x35, 0xC7}};

} // namespace

MarkFilter::MarkFilter(IKxSceneDetect2& scenes, MarkSchedule& marks, HRESULT* phr)
    : CTransInPlaceFilter(nullptr, nullptr, kMarkClass, phr, false), m_scenes(scenes), m_marks(marks) {}

HRESULT MarkFilter::CheckInputType(const CMediaType* type) {
    return *type->Type() == MEDIATYPE_Video ? S_OK : S_FALSE;
}

HRESULT MarkFilter::GetMediaType(int position, CMediaType* type) {
    if (position != 0 || !m_pInput->IsConnected())
        return VFW_S_NO_MORE_ITEMS;
    return m_pInput->ConnectionMediaType(type);
}

HRESULT MarkFilter::DecideBufferSize(IMemAllocator* allocator, ALLOCATOR_PROPERTIES* request) {
    if (IMemAllocator* upstream = InputPin()->PeekAllocator()) {
        const HRESULT hr = upstream->GetProperties(request);
        if (FAILED(hr))
            return hr;
    }
    request->cBuffers = std::max<LONG>(request->cBuffers, 1);
    request->cbBuffer = std::max<LONG>(request->cbBuffer, 1);
    ALLOCATOR_PROPERTIES granted{};
    return allocator->SetProperties(request, &granted);
}

HRESULT MarkFilter::Transform(IMediaSample* /*sample*/) {
    if (m_marks.IsDue(m_sample++))
        m_scenes.MarkScene();
    return S_OK;
}

} // namespace scenedetect
