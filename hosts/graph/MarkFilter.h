// Passes samples on as they are, and marks scenes just before the sample at which each is due.
#pragma once

#include "baseclasses/TransInPlaceFilter.h"
#include "running/detection/MarkSchedule.h"
#include "scenes/IKxSceneDetect.h"

#include <cstdint>

namespace scenedetect {

/// A user's mark comes when it comes, and MarkScene is all it takes. To hit a certain sample of a stream that
/// other filters deliver, one has to stand in its way.
class MarkFilter final : public CTransInPlaceFilter {
  public:
    /// `scenes` and `marks` must outlive the streaming.
    MarkFilter(IKxSceneDetect2& scenes, MarkSchedule& marks, HRESULT* phr);

    HRESULT CheckInputType(const CMediaType* type) override;
    HRESULT GetMediaType(int position, CMediaType* type) override;
    HRESULT DecideBufferSize(IMemAllocator* allocator, ALLOCATOR_PROPERTIES* request) override;
    HRESULT Transform(IMediaSample* sample) override;

  private:
    IKxSceneDetect2& m_scenes;
    MarkSchedule& m_marks;
    std::int64_t m_sample = 0;
};

} // namespace scenedetect
