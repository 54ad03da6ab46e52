// Samples over pictures: each points at the bytes of a picture that it holds, and nothing is copied.
#pragma once

#include "baseclasses/Allocator.h"
#include "baseclasses/MediaSample.h"
#include "baseclasses/Unknown.h"
#include "reading/readers/Picture.h"
#include "scenes/ISampleRows.h"

namespace scenedetect {

/// A sample with a picture to be filled while it is out; whoever holds the sample holds the picture.
class PictureSample final : public CMediaSample, public ISampleRows {
  public:
    PictureSample(CBaseAllocator* allocator, HRESULT* phr) : CMediaSample(nullptr, allocator, phr) {}

    STDMETHODIMP QueryInterface(REFIID riid, void** ppv) override {
        return ppv && riid == IID_ISampleRows ? GetInterface(static_cast<ISampleRows*>(this), ppv)
                                              : CMediaSample::QueryInterface(riid, ppv);
    }
    STDMETHODIMP_(ULONG) AddRef() override { return CMediaSample::AddRef(); }
    STDMETHODIMP_(ULONG) Release() override { return CMediaSample::Release(); }
    STDMETHODIMP_(const PixelRows*) Rows() override { return picture.Rows(); }

    Picture picture;
};

/// Its samples own no memory of the allocator's: a picture's owner gets it back when the sample returns. Not
/// read-only, so that the filter's pins pass the samples on. Thread-safe.
class PictureAllocator final : public CBaseAllocator {
  public:
    explicit PictureAllocator(HRESULT* phr) : CBaseAllocator(nullptr, nullptr, phr) {}
    ~PictureAllocator() override;

    STDMETHODIMP ReleaseBuffer(IMediaSample* sample) override;

  protected:
    HRESULT Alloc() override;
    void Free() override;

  private:
    void DeleteSamples();
};

} // namespace scenedetect
