// The per-sample path: what the filter takes from each sample for the frame watch.
#include "filter/SceneDetectFilter.h"

#include "baseclasses/ComRef.h"
#include "filter/MediaTypes.h"
#include "scenes/ISampleRows.h"

#include <algorithm>
#include <exception>

namespace scenedetect {

HRESULT SceneDetectFilter::Transform(IMediaSample* sample) {
    const auto frame = m_run.BeginFrame();
    if (!frame)
        return S_OK;
    try {
        WatchSample(*sample, *frame);
    } catch (const std::exception&) {
        // Out of memory: the stream goes on, and so does the count.
    }
    m_run.EndFrame(*frame);
    return S_OK;
}

void SceneDetectFilter::WatchSample(IMediaSample& sample, const RunFrame& frame) {
    // Deliberate: a sample without times starts at the previous one's relative start, made relative once
    // more.
    REFERENCE_TIME stop = 0;
    (void)sample.GetTime(&m_rtStart, &stop);
    const auto duration =
        static_cast<LONGLONG>(static_cast<ULONGLONG>(stop) - static_cast<ULONGLONG>(m_rtStart));
    m_rtStart = m_run.RelativeStart(frame, m_rtStart);

    TakeOverMediaType(sample);

    BYTE nothing = 0; // stands in for the data of a sample without any
    BYTE* bits = nullptr;
    LONG length = 0;
    if (SUCCEEDED(sample.GetPointer(&bits)) && bits)
        length = std::max<LONG>(sample.GetActualDataLength(), 0);
    else
        bits = &nothing;
    BITMAPINFOHEADER* header = GetBitmapHeader(m_mtCurrent);
    // Deliberate: the type that is kept changes from sample to sample.
    if (header)
        header->biSizeImage = static_cast<DWORD>(length);
    const Dib picture(header, GetBitmapHeaderExtent(m_mtCurrent), bits, static_cast<std::size_t>(length));
    const auto rows = QueryFor<ISampleRows>(&sample, IID_ISampleRows);
    m_watch.Watch(frame,
                  {picture, m_rtStart, duration, GetFrameDurationOrDefault(m_pInput->CurrentMediaType()),
                   rows ? rows->Rows() : nullptr});
}

void SceneDetectFilter::TakeOverMediaType(IMediaSample& sample) {
    if (m_bNewStream.exchange(false))
        m_mtCurrent = m_pInput->CurrentMediaType();
    AM_MEDIA_TYPE* attached = nullptr;
    if (sample.GetMediaType(&attached) != S_OK || !attached)
        return;
    // Against the pin's type, not m_mtCurrent: the latter's header is changed sample by sample.
    const bool differs = m_pInput->CurrentMediaType() != CMediaType(*attached);
    if (differs)
        m_mtCurrent = *attached;
    DeleteMediaType(attached);
    if (differs) {
        m_pInput->SetMediaType(&m_mtCurrent);
        m_pOutput->SetMediaType(&m_mtCurrent);
    }
}

} // namespace scenedetect
