// The heart of the filter, free of COM: what is done with each frame of a detection run, wherever it comes
// from.
#pragma once

#include "engine/Detector.h"
#include "engine/DistanceRing.h"
#include "engine/DvDcImage.h"
#include "filter/Dvutil.h"
#include "filter/ReducedSize.h"
#include "scenes/DetectionRun.h"

#include <atomic>
#include <cstdint>
#include <span>

namespace scenedetect {

/// One frame of a stream. Times are in 100 ns; the start is relative to the run's first frame.
struct StreamFrame {
    const Dib& picture; ///< its bytes as they came, under the stream's bitmap header if that has one
    LONGLONG start = 0;
    LONGLONG duration = 0;           ///< 0 or less when unknown
    LONGLONG frameDuration = 0;      ///< what the stream says a frame lasts
    const PixelRows* rows = nullptr; ///< where the picture lies if it does not as `picture` says
};

/// Feeds one run. `Watch` is for the thread that streams; what tells of timecode may be asked on any.
class FrameWatch {
  public:
    /// `run` has to outlive it.
    explicit FrameWatch(DetectionRun& run) : m_run(run) {}

    /// What a frame of the stream lasts, in 100 ns; 0 when unknown. Before the stream, or on its thread.
    void SetFrameDuration(LONGLONG duration);
    /// Adds the scenes and figures that `number`, which is under way, brings. The first frame of a run
    /// settles whether the run is DV, its grid and its parameters. The caller begins and ends the frame.
    /// Throws std::bad_alloc.
    void Watch(const RunFrame& number, const StreamFrame& frame);

    /// The run's first timecode as a frame number, not corrected for drop-frame.
    [[nodiscard]] std::int32_t FirstTimecode() const { return m_nFirstTimecodeFrame; }
    /// The latest timecode that was read minus the first, in real frames.
    [[nodiscard]] std::int32_t TimecodeOffset() const { return m_nTimecodeOffset; }

  private:
    // One frame under watch: its place in the run, its picture.
    struct Watched;

    void ReadTimecode(std::span<const std::uint8_t> data);
    bool IsSceneStart(const Watched& watched);
    bool IsRecordingTimeJump(const Watched& watched);
    bool IsPictureChange(const Watched& watched);
    void SettleGrid(const Watched& watched);
    void SettleDvArea(const Watched& watched);
    void LoadDcImage(const Watched& watched, std::uint8_t* slot);

    DetectionRun& m_run;
    Detector m_detector;      // streaming thread, but for the frame rate learnt before streaming
    DistanceRing m_distances; // of runs that measure them
    const Dvutil m_dvutil{};
    const DvDcImage m_dvDecoder; // its tables are built with the owner, not while streaming

    // Read by other threads, too.
    std::atomic<std::int32_t> m_nFirstTimecodeFrame = 0; ///< not corrected for drop-frame
    std::atomic<std::int32_t> m_nTimecodeOffset = 0;
    std::atomic<std::int32_t> m_nFramesPerSecond = 30;

    // Streaming thread only.
    bool m_bIsDV = false;
    bool m_areaOf625Lines = false;
    bool m_bHaveFirstTimecode = false;
    std::int32_t m_nFirstTimecodeFrameDF = 0;
    std::int32_t m_nPrevRecordingFrame = 0;
    ReducedSize m_reducedSize;
};

} // namespace scenedetect
