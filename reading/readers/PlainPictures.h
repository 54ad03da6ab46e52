// Opens what needs no media library: raw DV by its structure, and AVI files whose frames are taken as they
// are.
#pragma once

#include "reading/readers/DamageLog.h"
#include "reading/readers/PictureReader.h"
#include "reading/readers/StreamInput.h"

#include <cstdint>
#include <memory>
#include <span>
#include <vector>

namespace scenedetect {

/// What lies at the beginning of the stream, which is rewound: at the most so many bytes. No more than is
/// needed should be asked for, since a stream may be live.
[[nodiscard]] std::vector<std::uint8_t> BeginOf(StreamInput& stream, std::size_t bytes);
/// Whether a stream that begins so is raw DV of 25 Mbit/s from its first byte on. No container begins as a DV
/// frame does. It takes kDifFrameBytes625 to know.
[[nodiscard]] bool BeginsAsRawDv(std::span<const std::uint8_t> start);
/// Whether DV frames begin after unknown bytes, which are stepped over: among the first kUnknownDvBytes. It
/// takes a frame more to know.
[[nodiscard]] bool HoldsRawDv(std::span<const std::uint8_t> start);
inline constexpr std::size_t kUnknownDvBytes = 2 * kDifFrameBytes625;

/// A reader of raw DV from the stream's beginning on; `threads` as Reading has them.
[[nodiscard]] std::unique_ptr<PictureReader> OpenRawDv(std::shared_ptr<StreamInput> stream,
                                                       const DamageLog& damage, int threads);
/// A reader of raw DV, or of an AVI file with DV or uncompressed pictures; null for all else. HostError for
/// files of these kinds without a picture that can be read.
[[nodiscard]] std::unique_ptr<PictureReader> OpenPlainPictures(std::shared_ptr<StreamInput> stream,
                                                               const DamageLog& damage, int threads);

} // namespace scenedetect
