// The scene-change engine: a ring of small luminance grids and the rule that finds cuts in them.
#pragma once

#include "engine/ComparedSamples.h"
#include "engine/decision/Decision.h"

#include <cstdint>
#include <memory>

namespace scenedetect {

class Dib;
struct LuminanceGrid;
struct PixelRows;

/// For every frame: fill the slot that `NextFrame` returns, then call `Process`. Owned by one filter and used
/// from its streaming thread only. Hold it by value: there is no virtual destructor.
class Detector {
  public:
    Detector();
    Detector(const Detector&) = delete;
    Detector& operator=(const Detector&) = delete;

    /// Those of `DetectionParameters` with these names; the longest scene stays as it is.
    void SetParameters(std::int32_t cutThreshold, std::int32_t darkLevel, std::int32_t diffClamp,
                       std::int32_t minVotes);
    void SetParameters(const DetectionParameters& parameters) { m_decision.SetParameters(parameters); }
    /// Forgets every frame and settles the slot size; all samples are compared. A grid that is empty, or of
    /// which five exceed 2 GiB, has no samples.
    void Reset();
    void SetGridWidth(std::int32_t width);
    void SetGridHeight(std::int32_t height);
    [[nodiscard]] std::int32_t GetBlockSize() const { return blockSize; }
    /// Knows the slot's rows, and compares only what lies in the parameters' area from now on, as far as the
    /// slot has it.
    void SettleArea(GridPlaces places);
    [[nodiscard]] const ComparedSamples& Compared() const { return m_compared; }
    /// Side in pixels of the blocks that `ExtractLuminance` averages. Only 1 to 2048 can be read.
    void SetBlockSize(std::int32_t size) { blockSize = size; }
    /// Whole frames per second, for the time codes of the trace.
    void SetFrameRate(std::int32_t framesPerSecond) { frameRate = framesPerSecond; }
    [[nodiscard]] std::int32_t GetFrameCount() const { return m_decision.FrameCount(); }
    /// Counts on from `frame`, with a new warm-up.
    void SetStartFrame(std::int32_t frame) { m_decision.SetStartFrame(frame); }
    /// Bytes in one slot: grid width times grid height.
    [[nodiscard]] std::int32_t GetSampleCount() const { return sampleCount; }

    /// The grid `offset` frames away from the current one (-1: the previous); null before `NextFrame`.
    virtual std::uint8_t* GetFrame(std::int32_t offset);
    /// The slot for the next frame, `GetSampleCount` bytes that still hold an old grid. Throws
    /// std::bad_alloc when there is no memory for the ring.
    std::uint8_t* NextFrame();
    /// Fills `slot` from a picture; leaves it alone, and logs, when the format is unknown.
    void ExtractLuminance(const Dib& frame, std::uint8_t* slot) const;
    void ExtractLuminance(const PixelRows& picture, std::uint8_t* slot) const;
    /// Blackens `slot`. Always false.
    bool ClearFrame(std::uint8_t* slot) const;

    /// Mean absolute difference of the current grid to another of its size, as the parameters have it and as
    /// far as they are compared; 0 for an empty grid.
    [[nodiscard]] std::int32_t DifferenceTo(const std::uint8_t* other);
    /// Of the current grid to the previous one, and mean level of the current one, likewise.
    [[nodiscard]] std::int32_t ComputeDifference();
    [[nodiscard]] std::int32_t ComputeMeanLevel();
    /// Mean square deviation of the current grid's samples from their mean, 0..16256, likewise.
    [[nodiscard]] std::int32_t ComputeVariance();
    /// Mean absolute difference of its samples that are neighbours in a row, times kDetailScale, likewise.
    [[nodiscard]] std::int32_t ComputeDetail();
    /// Judges the frame two before the current one and counts the current one. Frames are numbered from 0 at
    /// the last `Reset`.
    Judgement Judge();
    /// Likewise; the number of a frame that begins a scene, or -1.
    std::int32_t Process() { return Judge().sceneStart; }

  private:
    [[nodiscard]] LuminanceGrid Grid() const;

    Decision m_decision;
    ComparedSamples m_compared;
    std::unique_ptr<std::uint8_t[]> frameBuffer; ///< five slots
    std::int32_t ringIndex = 0;
    std::int32_t sampleCount = 0;
    std::int32_t gridWidth = 20;
    std::int32_t gridHeight = 15;
    std::int32_t blockSize = 8;
    std::int32_t frameRate = 30;
};

} // namespace scenedetect
