// The scene-change engine: a ring of small luminance grids and the rule that finds cuts in them.
#pragma once

#include <array>
#include <atomic>
#include <cstdint>
#include <memory>

namespace scenedetect {

class Dib;

/// Frames after which a scene ends even without a cut; 0 or less: never. Read by every engine of the process.
extern std::atomic<std::int32_t> g_maxSceneLength;

/// For every frame: fill the slot that `NextFrame` returns, then call `Process`. Owned by one filter and used
/// from its streaming thread only. Hold it by value: there is no virtual destructor.
class Detector {
  public:
    Detector();
    Detector(const Detector&) = delete;
    Detector& operator=(const Detector&) = delete;

    /// `cut`: by how much a cut's difference exceeds its neighbours'; `dark`: mean level up to which a frame
    /// is dark; `clamp`: most that one sample adds to a difference; `votes`: neighbours to be exceeded.
    void SetParameters(std::int32_t cut, std::int32_t dark, std::int32_t clamp, std::int32_t votes);
    /// Forgets every frame and settles the slot size. A grid that is empty or too big for 32 bits has none.
    void Reset();
    void SetGridWidth(std::int32_t width);
    void SetGridHeight(std::int32_t height);
    [[nodiscard]] std::int32_t GetBlockSize() const { return blockSize; }
    /// Side in pixels of the blocks that `ExtractLuminance` averages. Only 1 to 2048 can be read.
    void SetBlockSize(std::int32_t size) { blockSize = size; }
    /// Whole frames per second, for the time codes of the trace.
    void SetFrameRate(std::int32_t framesPerSecond) { frameRate = framesPerSecond; }
    [[nodiscard]] std::int32_t GetFrameCount() const { return frameCount; }
    /// Counts on from `frame`, with a new warm-up.
    void SetStartFrame(std::int32_t frame);
    /// Bytes in one slot: grid width times grid height.
    [[nodiscard]] std::int32_t GetSampleCount() const { return sampleCount; }

    /// The grid `offset` frames away from the current one (-1: the previous); null before `NextFrame`.
    virtual std::uint8_t* GetFrame(std::int32_t offset);
    /// The slot for the next frame, `GetSampleCount` bytes that still hold an old grid. Throws
    /// std::bad_alloc when there is no memory for the ring.
    std::uint8_t* NextFrame();
    /// Fills `slot` from a picture; leaves it alone, and logs, when the format is unknown.
    void ExtractLuminance(const Dib& frame, std::uint8_t* slot) const;
    /// Blackens `slot`. Always false.
    bool ClearFrame(std::uint8_t* slot) const;

    /// Mean absolute difference of the current grid to the previous one, and mean level of the current one;
    /// 0 for an empty grid.
    [[nodiscard]] std::int32_t ComputeDifference();
    [[nodiscard]] std::int32_t ComputeMeanLevel();
    /// Judges the frame two before the current one and counts the current one. The number of a frame that
    /// begins a scene (from 0 at the last `Reset`), or -1.
    std::int32_t Process();

  private:
    std::int32_t Decide(std::int32_t diff, std::int32_t level);
    void Trace(std::int32_t frame, bool filled, bool cut, bool dark) const;

    std::int32_t cutThreshold = 0;
    std::int32_t darkLevel = 0;
    std::int32_t diffClamp = 0;
    std::int32_t minVotes = 0;
    std::unique_ptr<std::uint8_t[]> frameBuffer; ///< five slots
    std::int32_t ringIndex = 0;
    bool darkLock = false;
    std::int32_t lastCut = 0;
    std::array<std::int32_t, 5> diffHistory{};
    std::array<std::int32_t, 5> levelHistory{};
    std::int32_t sampleCount = 0;
    std::int32_t gridWidth = 20;
    std::int32_t gridHeight = 15;
    std::int32_t blockSize = 8;
    std::int32_t frameRate = 30;
    std::int32_t startFrame = 0;
    std::int32_t frameCount = 0;
};

} // namespace scenedetect
