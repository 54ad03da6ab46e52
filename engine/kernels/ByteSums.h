// Sums over runs of bytes: the levels of a grid and its differences to another one.
#pragma once

#include <cstddef>
#include <cstdint>

namespace scenedetect {

/// The sum of `count` bytes.
using ByteSum = std::uint64_t (*)(const std::uint8_t* bytes, std::size_t count);
/// The sum of the absolute differences of `count` pairs, each at most `clamp`.
using DifferenceSum = std::uint64_t (*)(const std::uint8_t* a, const std::uint8_t* b, std::size_t count,
                                        std::uint8_t clamp);

// The references.
[[nodiscard]] std::uint64_t ScalarByteSum(const std::uint8_t* bytes, std::size_t count);
[[nodiscard]] std::uint64_t ScalarDifferenceSum(const std::uint8_t* a, const std::uint8_t* b,
                                                std::size_t count, std::uint8_t clamp);

// The fastest on a processor with `cpuFeatures` (platform/CpuFeatures.h).
[[nodiscard]] ByteSum SelectByteSum(unsigned cpuFeatures);
[[nodiscard]] DifferenceSum SelectDifferenceSum(unsigned cpuFeatures);

} // namespace scenedetect
