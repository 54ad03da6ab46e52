// Each frame's figures as the picture comparison found them: put together and kept for the host.
#pragma once

#include "engine/decision/Decision.h"
#include "engine/decision/Distances.h"
#include "scenes/IKxSceneDetect.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace scenedetect {

inline constexpr KxFrameDistances kWithoutDistances = {
    {kNoDistance, kNoDistance, kNoDistance, kNoDistance, kNoDistance, kNoDistance, kNoDistance, kNoDistance},
    kNoDistance,
    kNoDistance};

/// Enters what came of a frame where it belongs: in that frame's own figures (all but the position is set),
/// and in those of the two frames compared before it; null for one that there is not.
void NoteJudgement(const Judgement& judgement, KxFrameFigures& current, KxFrameFigures* before,
                   KxFrameFigures* twoBefore);

/// The figures of a run's last kCapacity frames. Those of the latest two frames are not final before the run
/// has ended, and are not handed out until then. The caller locks.
class FiguresQueue {
  public:
    static constexpr std::size_t kCapacity = 65536;
    static constexpr std::size_t kLookAhead = 2;

    /// Allocates; what is kept stays. Throws std::bad_alloc.
    void Open() { m_ring.resize(kCapacity); }
    /// Allocates room for distances, too. Throws std::bad_alloc.
    void OpenDistances() { m_distances.resize(kCapacity, kWithoutDistances); }
    /// Drops distances alone, and frees their memory.
    void CloseDistances() { m_distances = {}; }
    /// Drops everything and frees the memory.
    void Close();
    /// A run begins: drops everything.
    void Begin();
    /// The run has ended: all figures are final.
    void End() { m_notFinal = 0; }

    /// The next frame that was compared, which is number `position` of the run. Only while open. `distances`
    /// are kept if there is room for them; null when none were measured.
    void Add(std::int32_t position, const Judgement& judgement, const Distances* distances);
    /// Hands out the oldest; how many. `distances` gets those of the same frames, and may be null.
    std::size_t Take(std::span<KxFrameFigures> target, KxFrameDistances* distances);

  private:
    KxFrameFigures& At(std::uint64_t index) { return m_ring[index % kCapacity]; }
    KxFrameFigures* Before(std::size_t frames);

    std::vector<KxFrameFigures> m_ring;
    std::vector<KxFrameDistances> m_distances; // as the ring, or empty
    // Frames since Begin.
    std::uint64_t m_begin = 0;
    std::uint64_t m_end = 0;
    std::size_t m_notFinal = kLookAhead;
};

} // namespace scenedetect
