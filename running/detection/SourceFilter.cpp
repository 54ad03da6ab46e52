#include "running/detection/SourceFilter.h"

#include "baseclasses/FourCCMap.h"
#include "platform/ComGuard.h"

#include <cstring>
#include <new>

namespace scenedetect {
namespace {

// Streaming is one thread from here to the sink, so a sample is back before the next is wanted. Whoever cuts
// keeps two until the scenes in them are known; the last leaves room for a filter that keeps one.
constexpr LONG kSamples = 4;

constexpr CLSID kSourceClass = {0x6F0B1B5E, 0x2E0D, 0x4C37, {0x9A, 0x51, 0x0B, 0x6E, 0x9D, 0x4C, 0x27, 0xD1}};

const GUID& RgbSubtype(WORD bitCount) {
    switch (bitCount) {
    case 1:
        return MEDIASUBTYPE_RGB1;
    case 4:
        return MEDIASUBTYPE_RGB4;
    case 8:
        return MEDIASUBTYPE_RGB8;
    case 16:
        return MEDIASUBTYPE_RGB555;
    case 32:
        return MEDIASUBTYPE_RGB32;
    default:
        return MEDIASUBTYPE_RGB24;
    }
}

} // namespace

CMediaType MediaTypeOf(const PictureFormat& format) {
    VIDEOINFOHEADER info{};
    info.AvgTimePerFrame = format.frameDuration;
    info.bmiHeader.biSize = sizeof(BITMAPINFOHEADER);
    info.bmiHeader.biWidth = format.width;
    info.bmiHeader.biHeight = format.height;
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = format.bitCount;
    info.bmiHeader.biCompression = format.fourcc;
    info.bmiHeader.biSizeImage = format.imageBytes;
    info.bmiHeader.biClrUsed = static_cast<DWORD>(format.colours.size());

    const GUID subtype = format.fourcc == BI_RGB ? RgbSubtype(format.bitCount) : FOURCCMap(format.fourcc);
    CMediaType type(&MEDIATYPE_Video);
    type.SetSubtype(&subtype);
    type.SetSampleSize(format.imageBytes);
    type.SetFormatType(&FORMAT_VideoInfo);
    // The colour table follows the header.
    const std::size_t tableBytes = format.colours.size() * sizeof(RGBQUAD);
    BYTE* const block = type.AllocFormatBuffer(static_cast<ULONG>(sizeof info + tableBytes));
    if (!block)
        throw std::bad_alloc();
    std::memcpy(block, &info, sizeof info);
    if (tableBytes != 0)
        std::memcpy(block + sizeof info, format.colours.data(), tableBytes);
    return type;
}

SourcePin::SourcePin(CBaseFilter* filter, CCritSec* lock, HRESULT* phr, const PictureFormat& format)
    : CBaseOutputPin(nullptr, filter, lock, phr, L"Output"),
      m_offered(MediaTypeOf(format)),
      m_imageBytes(static_cast<LONG>(format.imageBytes)) {}

HRESULT SourcePin::CheckMediaType(const CMediaType* type) {
    return *type == m_offered ? S_OK : S_FALSE;
}

HRESULT SourcePin::GetMediaType(int position, CMediaType* type) {
    if (position != 0)
        return VFW_S_NO_MORE_ITEMS;
    return type->Set(m_offered);
}

HRESULT SourcePin::DecideAllocator(IMemInputPin* peer, IMemAllocator** allocator) {
    *allocator = nullptr;
    return Guarded([&] {
        HRESULT hr = S_OK;
        auto made = std::make_unique<PictureAllocator>(&hr);
        made->AddRef();
        ComRef<IMemAllocator> own(made.release());
        ALLOCATOR_PROPERTIES request{};
        if (SUCCEEDED(hr))
            hr = DecideBufferSize(own.get(), &request);
        if (SUCCEEDED(hr))
            hr = peer->NotifyAllocator(own.get(), FALSE);
        if (SUCCEEDED(hr))
            *allocator = own.release();
        return hr;
    });
}

HRESULT SourcePin::DecideBufferSize(IMemAllocator* allocator, ALLOCATOR_PROPERTIES* request) {
    request->cBuffers = kSamples;
    request->cbBuffer = m_imageBytes;
    request->cbAlign = 1;
    ALLOCATOR_PROPERTIES granted{};
    return allocator->SetProperties(request, &granted);
}

STDMETHODIMP SourcePin::Notify(IBaseFilter* /*sender*/, Quality /*quality*/) {
    return S_OK; // a file is in no hurry
}

SourceFilter::SourceFilter(const PictureFormat& format, HRESULT* phr)
    : CBaseFilter(nullptr, nullptr, &m_lock, kSourceClass, phr),
      m_pin(this, &m_lock, phr, format),
      m_format(format) {}

ComRef<PictureSample> SourceFilter::TakeSample() {
    IMediaSample* sample = nullptr;
    if (FAILED(m_pin.GetDeliveryBuffer(&sample, nullptr, nullptr, 0)))
        return nullptr;
    return ComRef<PictureSample>(static_cast<PictureSample*>(sample));
}

HRESULT SourceFilter::Deliver(PictureSample& sample) {
    const Picture& picture = sample.picture;
    sample.SetPointer(picture.Bytes().data(), static_cast<LONG>(picture.Bytes().size()));
    if (picture.format != m_format) {
        CMediaType changed = MediaTypeOf(picture.format);
        const HRESULT hr = sample.SetMediaType(&changed);
        if (FAILED(hr))
            return hr;
        m_format = picture.format;
    }
    REFERENCE_TIME start = m_sampleCount * m_format.frameDuration;
    REFERENCE_TIME stop = start + m_format.frameDuration;
    sample.SetTime(&start, &stop);
    sample.SetSyncPoint(TRUE);
    sample.SetDiscontinuity(m_sampleCount == 0 ? TRUE : FALSE);
    ++m_sampleCount;
    return m_pin.Deliver(&sample);
}

} // namespace scenedetect
