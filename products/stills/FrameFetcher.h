// Decodes single frames of a file that was read before, at the places that were noted then.
#pragma once

#include "reading/timing/SampleTable.h"

#include <memory>
#include <string>

struct AVFrame;

namespace scenedetect {

/// Fast when the places ascend. One thread.
class FrameFetcher {
  public:
    /// `isRawDv`: of a raw DV stream, whose frames are found by their offsets; else they are by their stamps.
    /// HostError when the file cannot be opened again; null where there are no decoders in this build.
    [[nodiscard]] static std::unique_ptr<FrameFetcher> Open(const std::string& path, bool isRawDv);
    virtual ~FrameFetcher() = default;

    /// The frame with its pixel aspect, valid until the next call; nothing when it is not found or cannot be
    /// decoded.
    [[nodiscard]] virtual const AVFrame* Fetch(const FilePlace& place) = 0;
    /// Quarter turns clockwise that stand the frames upright, 0 to 3.
    [[nodiscard]] virtual int QuarterTurns() const { return 0; }
};

} // namespace scenedetect
