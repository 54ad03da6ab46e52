// Which instruction sets kernels may use, those of every room.
#pragma once

#include <string_view>

namespace scenedetect {

inline constexpr unsigned kCpuSse2 = 1u << 0;
inline constexpr unsigned kCpuAvx2 = 1u << 1;
inline constexpr unsigned kCpuAll = ~0u;

/// The processor's features less those that are switched off, by RestrictCpuFeatures or by the environment
/// variable SCENEDETECT_CPU as the process found it at the first call. Any thread; one load after the first.
[[nodiscard]] unsigned CpuFeatures() noexcept;

/// Allows only the features in `mask` from now on (kCpuAll: all that processor and environment allow). For
/// tests and benchmarks.
void RestrictCpuFeatures(unsigned mask) noexcept;

/// What a value of SCENEDETECT_CPU allows: "none" or "sse2". Any other text allows everything.
[[nodiscard]] unsigned CpuFeaturesNamed(std::string_view setting) noexcept;

} // namespace scenedetect
