// The graph's source: pictures become samples on its output pin.
#pragma once

#include "baseclasses/BaseFilter.h"
#include "baseclasses/BaseOutputPin.h"
#include "baseclasses/ComRef.h"
#include "reading/readers/Picture.h"
#include "running/detection/PictureAllocator.h"

#include <cstdint>
#include <memory>

namespace scenedetect {

/// The media type of pictures of this format: video, VIDEOINFOHEADER and any colour table. std::bad_alloc.
[[nodiscard]] CMediaType MediaTypeOf(const PictureFormat& format);

/// Offers one media type and delivers with an allocator of its own.
class SourcePin final : public CBaseOutputPin {
  public:
    SourcePin(CBaseFilter* filter, CCritSec* lock, HRESULT* phr, const PictureFormat& format);

    HRESULT CheckMediaType(const CMediaType* type) override;
    HRESULT GetMediaType(int position, CMediaType* type) override;
    HRESULT DecideAllocator(IMemInputPin* peer, IMemAllocator** allocator) override;
    HRESULT DecideBufferSize(IMemAllocator* allocator, ALLOCATOR_PROPERTIES* request) override;
    STDMETHODIMP Notify(IBaseFilter* sender, Quality quality) override;

  private:
    const CMediaType m_offered;
    const LONG m_imageBytes;
};

class SourceFilter final : public CBaseFilter {
  public:
    /// `format` is that of the first picture.
    SourceFilter(const PictureFormat& format, HRESULT* phr);

    int GetPinCount() override { return 1; }
    CBasePin* GetPin(int n) override { return n == 0 ? &m_pin : nullptr; }

    // --- streaming thread ---
    /// A sample whose picture is to be filled; none when the graph is stopped.
    [[nodiscard]] ComRef<PictureSample> TakeSample();
    /// Sends the picture through the graph: as sample number i it starts at i frame durations and lasts one.
    /// A format other than the one before goes with it as the sample's media type.
    [[nodiscard]] HRESULT Deliver(PictureSample& sample);
    HRESULT DeliverEndOfStream() { return m_pin.DeliverEndOfStream(); }

  private:
    CCritSec m_lock;
    SourcePin m_pin;
    PictureFormat m_format; // of the sample before
    std::int64_t m_sampleCount = 0;
};

} // namespace scenedetect
