#include "filter/SceneDetectFilter.h"

#include "filter/MediaTypes.h"
#include "filter/SceneDetectPins.h"
#include "platform/ComGuard.h"

#include <algorithm>

namespace scenedetect {

namespace {

struct OfferedSize {
    LONG width;
    LONG height;
};
constexpr OfferedSize kOfferedSizes[] = {{160, 120}, {180, 120}, {180, 144}, {88, 60}, {88, 76}};

void MakeRgb24Type(const OfferedSize& size, CMediaType& type) {
    const auto bytes = static_cast<DWORD>(size.width * size.height * 3);
    VIDEOINFOHEADER format{};
    format.bmiHeader.biSize = sizeof(BITMAPINFOHEADER);
    format.bmiHeader.biWidth = size.width;
    format.bmiHeader.biHeight = size.height;
    format.bmiHeader.biPlanes = 1;
    format.bmiHeader.biBitCount = 24;
    format.bmiHeader.biCompression = BI_RGB;
    format.bmiHeader.biSizeImage = bytes;

    type.InitMediaType();
    type.SetType(&MEDIATYPE_Video);
    type.SetSubtype(&MEDIASUBTYPE_RGB24);
    type.SetFormatType(&FORMAT_VideoInfo);
    type.SetTemporalCompression(FALSE);
    type.SetSampleSize(bytes);
    type.SetFormat(reinterpret_cast<BYTE*>(&format), sizeof format);
}

// What the picture comparison can read without decoding.
bool IsWatchable(const CMediaType& type) {
    if (IsDV(type))
        return true;
    for (const GUID* subtype :
         {&MEDIASUBTYPE_RGB24, &MEDIASUBTYPE_YUY2, &MEDIASUBTYPE_YV12, &MEDIASUBTYPE_UYVY})
        if (type.subtype == *subtype)
            return true;
    const BITMAPINFOHEADER* header = GetBitmapHeader(static_cast<const AM_MEDIA_TYPE&>(type));
    return header && header->biCompression == MAKEFOURCC('I', '4', '2', '0');
}

} // namespace

CUnknown* WINAPI SceneDetectFilter::CreateInstance(LPUNKNOWN outer, HRESULT* phr) {
    SceneDetectFilter* filter = nullptr;
    const HRESULT made = Guarded([&] {
        filter = new SceneDetectFilter(outer, phr);
        return S_OK;
    });
    if (FAILED(made))
        *phr = made;
    return filter;
}

SceneDetectFilter::SceneDetectFilter(LPUNKNOWN outer, HRESULT* phr)
    : CTransInPlaceFilter(nullptr, outer, CLSID_SceneDetectFilter, phr, true) {
    m_pInput = new SceneDetectInputPin(this, phr);
    m_pOutput = new SceneDetectOutputPin(this, phr);
}

SceneDetectFilter::~SceneDetectFilter() = default;

STDMETHODIMP SceneDetectFilter::NonDelegatingQueryInterface(REFIID riid, void** ppv) {
    if (riid == IID_IKxSceneDetect || riid == IID_IKxSceneDetect2)
        return GetInterface(static_cast<IKxSceneDetect2*>(this), ppv);
    if (riid == IID_IKxSceneDetectEx)
        return GetInterface(static_cast<IKxSceneDetectEx*>(this), ppv);
    if (riid == IID_IKxSceneDetectTuning)
        return GetInterface(static_cast<IKxSceneDetectTuning*>(this), ppv);
    if (riid == IID_IKxSceneDetectDistances)
        return GetInterface(static_cast<IKxSceneDetectDistances*>(this), ppv);
    return CTransInPlaceFilter::NonDelegatingQueryInterface(riid, ppv);
}

HRESULT SceneDetectFilter::CheckInputType(const CMediaType* type) {
    // Deliberate: a VideoInfo2 type is taken as a format change in mid-stream only, never at connection time.
    if (type->formattype == FORMAT_VideoInfo2 && m_pInput->CheckStreaming() != S_OK)
        return S_FALSE;
    if (!IsVideo(*type))
        return S_FALSE;
    switch (m_run.m_nMethod) {
    case KxMethodVideo:
        return IsWatchable(*type) ? S_OK : S_FALSE;
    case KxMethodTimestamp:
        return IsDV(*type) ? S_OK : S_FALSE;
    default:
        return S_OK;
    }
}

HRESULT SceneDetectFilter::CheckTransform(const CMediaType* /*input*/, const CMediaType* /*output*/) {
    return S_OK;
}

HRESULT SceneDetectFilter::DecideBufferSize(IMemAllocator* allocator, ALLOCATOR_PROPERTIES* request) {
    ALLOCATOR_PROPERTIES taken{};
    if (IMemAllocator* inputAllocator = m_pInput->IsConnected() ? InputPin()->PeekAllocator() : nullptr) {
        const HRESULT hr = inputAllocator->GetProperties(&taken);
        if (FAILED(hr))
            return hr;
    } else {
        taken.cBuffers = 1;
        taken.cbBuffer = 1;
    }
    request->cBuffers = std::max<LONG>(taken.cBuffers, 1);
    request->cbBuffer = std::max<LONG>(taken.cbBuffer, 1);
    ALLOCATOR_PROPERTIES granted{};
    const HRESULT hr = allocator->SetProperties(request, &granted);
    if (FAILED(hr))
        return hr;
    return taken.cBuffers > granted.cBuffers || taken.cbBuffer > granted.cbBuffer ? E_FAIL : S_OK;
}

HRESULT SceneDetectFilter::GetMediaType(int position, CMediaType* type) {
    if (m_pInput->IsConnected()) {
        if (position != 0)
            return VFW_S_NO_MORE_ITEMS;
        (void)m_pInput->ConnectionMediaType(type);
        return S_OK;
    }
    if (position < 0 || static_cast<std::size_t>(position) >= std::size(kOfferedSizes))
        return VFW_S_NO_MORE_ITEMS;
    MakeRgb24Type(kOfferedSizes[position], *type);
    return S_OK;
}

HRESULT SceneDetectFilter::SetMediaType(PIN_DIRECTION direction, const CMediaType* type) {
    if (direction == PINDIR_INPUT)
        m_watch.SetFrameDuration(GetFrameDuration(*type));
    return CTransInPlaceFilter::SetMediaType(direction, type);
}

STDMETHODIMP SceneDetectFilter::Pause() {
    {
        const CAutoLock lock(&m_csFilter);
        if (m_State == State_Stopped) {
            m_run.m_nFrameOffset = 0;
            m_bNewStream = true;
        }
    }
    return CTransInPlaceFilter::Pause();
}

} // namespace scenedetect
