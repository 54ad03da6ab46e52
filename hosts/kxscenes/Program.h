// The life of kxscenes, from its arguments to its exit code; how it is stopped differs from system to system.
#pragma once

#include <atomic>

namespace scenedetect {

/// Exit codes after a signal are this and its number, as shells count.
inline constexpr int kSignalExit = 128;

/// What the system's part keeps for it.
struct ProgramSystem {
    std::atomic<bool>& stop; ///< ends the run at its next picture
    /// The number of the signal that has done so, as systems with signals count them: 1 a hang-up, 2 Ctrl-C.
    const std::atomic<int>& signal;
    bool isOutputOpen = true; ///< the standard output
    void (*begin)();          ///< called before a run
};

/// Never throws. Arguments are UTF-8 (off Windows: as they were given).
[[nodiscard]] int RunProgram(int argc, const char* const* argv, const ProgramSystem& system) noexcept;

} // namespace scenedetect
