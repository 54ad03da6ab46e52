// The scene detect filter: an in-place transform that passes every sample on untouched and notes where
// scenes begin.
#pragma once

#include "baseclasses/TransInPlaceFilter.h"
#include "filter/FrameWatch.h"
#include "scenes/DetectionRun.h"
#include "scenes/IKxSceneDetect.h"

#include <atomic>

namespace scenedetect {

/// Made by the class factory only (`CreateInstance`); lives by its COM references. Negotiation runs on the
/// thread that builds the graph, `Transform` on the streaming thread, the control methods on any.
class SceneDetectFilter final : public CTransInPlaceFilter,
                                public IKxSceneDetect2,
                                public IKxSceneDetectEx,
                                public IKxSceneDetectTuning,
                                public IKxSceneDetectDistances {
  public:
    /// The class table's creation function. Null with a failure code in `*phr` when it can't be made.
    static CUnknown* WINAPI CreateInstance(LPUNKNOWN outer, HRESULT* phr);

    DECLARE_IUNKNOWN
    STDMETHODIMP NonDelegatingQueryInterface(REFIID riid, void** ppv) override;

    // --- negotiation ---
    HRESULT CheckInputType(const CMediaType* type) override;
    HRESULT CheckTransform(const CMediaType* input, const CMediaType* output) override;
    HRESULT DecideBufferSize(IMemAllocator* allocator, ALLOCATOR_PROPERTIES* request) override;
    HRESULT GetMediaType(int position, CMediaType* type) override;
    HRESULT SetMediaType(PIN_DIRECTION direction, const CMediaType* type) override;

    // --- streaming ---
    STDMETHODIMP Pause() override;
    using CTransInPlaceFilter::Transform;
    HRESULT Transform(IMediaSample* sample) override;

    // --- IKxSceneDetect2 ---
    STDMETHODIMP EnableDetection(BOOL bEnable) override;
    STDMETHODIMP GetNextScene(BITMAPINFOHEADER** ppHeader, BYTE** ppBits, ULONG* pdwPos) override;
    STDMETHODIMP ReleaseScene() override;
    STDMETHODIMP GetStartTimecode(ULONG* pdwFrames) override;
    STDMETHODIMP SetDetectionMethod(ULONG dwMethod) override;
    STDMETHODIMP GetDetectionMethod(ULONG* pdwMethod) override;
    STDMETHODIMP SetSceneInterval(ULONG dwFrames) override;
    STDMETHODIMP MarkScene() override;
    STDMETHODIMP GetFrameCount(ULONG* pdwFrames) override;
    STDMETHODIMP GetCurrentTimecode(ULONG* pdwFrames) override;
    STDMETHODIMP EnableTimecode(BOOL bEnable) override;
    STDMETHODIMP IsTimecodeEnabled() override;
    STDMETHODIMP EnableSceneListFile(LPCWSTR pszPath) override;
    STDMETHODIMP DisableSceneListFile() override;

    // --- IKxSceneDetectEx ---
    STDMETHODIMP SetFrameOffset(LONG nFrames) override;
    STDMETHODIMP SetTimeOffset(LONGLONG rtOffset) override;
    STDMETHODIMP GetSceneCount(ULONG* pdwCount) override;
    STDMETHODIMP EnableSceneBitmaps(BOOL bEnable) override;

    // --- IKxSceneDetectTuning ---
    STDMETHODIMP SetParameter(ULONG dwParameter, LONG nValue) override;
    STDMETHODIMP GetParameter(ULONG dwParameter, LONG* pnValue) override;
    STDMETHODIMP GetParameterRange(ULONG dwParameter, LONG* pnLeast, LONG* pnMost, LONG* pnDefault) override;
    STDMETHODIMP ResetParameters() override;
    STDMETHODIMP EnableFrameFigures(BOOL bEnable) override;
    STDMETHODIMP GetFrameFigures(ULONG dwCount, KxFrameFigures* pFigures, ULONG* pdwTaken) override;

    // --- IKxSceneDetectDistances ---
    STDMETHODIMP EnableFrameDistances(BOOL bEnable) override;
    STDMETHODIMP GetFrameDistances(ULONG dwCount, KxFrameFigures* pFigures, KxFrameDistances* pDistances,
                                   ULONG* pdwTaken) override;

  private:
    SceneDetectFilter(LPUNKNOWN outer, HRESULT* phr);
    ~SceneDetectFilter() override;

    void WatchSample(IMediaSample& sample, const RunFrame& frame);
    void TakeOverMediaType(IMediaSample& sample);

    DetectionRun m_run;
    FrameWatch m_watch{m_run};
    std::atomic<bool> m_bNewStream = true; ///< the next sample's type is to be learnt from the input

    // Streaming thread only.
    CMediaType m_mtCurrent;       ///< type of the frames being watched
    REFERENCE_TIME m_rtStart = 0; ///< start of the latest sample, relative to its run's first
};

} // namespace scenedetect
