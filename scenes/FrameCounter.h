// Counts a run's frames so that a sample still in flight when its run ends is counted there, and never in the
// next.
#pragma once

#include <atomic>
#include <cstdint>
#include <optional>

namespace scenedetect {

/// A frame under watch: the run it belongs to and its number there.
struct RunFrame {
    std::uint32_t run = 0;
    std::int32_t number = 0;
};

/// One word holds the run's generation and its frame count, so that the streaming thread sees both as one. A
/// run has an odd generation, and the even one after it once it has ended. Runs are started and ended by one
/// thread at a time.
class FrameCounter {
  public:
    /// Begins a run at frame 0.
    void Start() { m_word = Word((Run() | 1) + 2, 0); }
    /// Ends the run; the count stays readable.
    void Stop() {
        if (IsRunning())
            m_word += Word(1, 0); // a frame counted at this moment keeps its place
    }

    [[nodiscard]] bool IsRunning() const { return Run() % 2 != 0; }
    [[nodiscard]] std::int32_t Count() const { return static_cast<std::int32_t>(m_word.load()); }

    /// The frame that the next sample is, or nothing while detection is off.
    [[nodiscard]] std::optional<RunFrame> Current() const {
        const std::uint64_t word = m_word;
        const RunFrame frame{RunOf(word), static_cast<std::int32_t>(word)};
        return frame.run % 2 != 0 ? std::optional(frame) : std::nullopt;
    }
    [[nodiscard]] bool IsCurrent(const RunFrame& frame) const { return Run() == frame.run; }

    /// Counts `frame`, also when its run has ended meanwhile, unless another one has begun.
    void Advance(const RunFrame& frame) {
        const auto number = static_cast<std::uint32_t>(frame.number);
        for (const std::uint32_t run : {frame.run, frame.run + 1}) {
            auto expected = Word(run, number);
            if (m_word.compare_exchange_strong(expected, Word(run, number + 1)))
                return;
        }
    }

  private:
    static std::uint32_t RunOf(std::uint64_t word) { return static_cast<std::uint32_t>(word >> 32); }
    static std::uint64_t Word(std::uint32_t run, std::uint32_t count) {
        return static_cast<std::uint64_t>(run) << 32 | count;
    }
    std::uint32_t Run() const { return RunOf(m_word); }

    std::atomic<std::uint64_t> m_word = 0;
};

} // namespace scenedetect
