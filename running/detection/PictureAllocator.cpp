#include "running/detection/PictureAllocator.h"

#include "platform/ComGuard.h"

namespace scenedetect {

PictureAllocator::~PictureAllocator() {
    DeleteSamples();
}

STDMETHODIMP PictureAllocator::ReleaseBuffer(IMediaSample* sample) {
    auto* returned = static_cast<PictureSample*>(sample);
    returned->picture.Clear();
    returned->SetPointer(nullptr, 0);
    return CBaseAllocator::ReleaseBuffer(sample);
}

HRESULT PictureAllocator::Alloc() {
    const CAutoLock lock(this);
    const HRESULT hr = CBaseAllocator::Alloc();
    if (hr != S_OK) // a failure, or the samples made before still do
        return hr == S_FALSE ? S_OK : hr;
    return Guarded([this] {
        DeleteSamples();
        HRESULT made = S_OK;
        while (m_lAllocated < m_lCount && SUCCEEDED(made)) {
            m_lFree.Add(new PictureSample(this, &made));
            ++m_lAllocated;
        }
        m_bChanged = false;
        return made;
    });
}

void PictureAllocator::Free() {
    DeleteSamples();
}

void PictureAllocator::DeleteSamples() {
    while (CMediaSample* sample = m_lFree.RemoveHead())
        delete sample;
    m_lAllocated = 0;
}

} // namespace scenedetect
