// Tables of parts of a film: what they say of themselves, and how they become the table of the whole.
#pragma once

#include "products/stats/StatsFile.h"
#include "reading/readers/MediaInfo.h"
#include "reading/readers/Picture.h"
#include "reading/timing/FilmPart.h"

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace scenedetect {

/// What a part's table tells in notes.
struct PartFacts {
    PartChoice part;
    std::int64_t inputBytes = 0; ///< of the film's file
    std::string reader;          ///< how its pictures are read
    MediaInfo media;             ///< as lists of scenes have it
};

/// Sums up what is seen of a picture, so that one machine's can be compared with another's.
[[nodiscard]] std::string PictureSum(const Picture& picture);

// Notes that are known when the part is measured: sums of its first and last picture, and, where the input
// ends early, that it does.
inline constexpr std::string_view kFirstPictureNote = "first-picture";
inline constexpr std::string_view kLastPictureNote = "last-picture";
inline constexpr std::string_view kBrokenOffNote = "breaks-off";

/// The settings of the table of a part of `input`.
[[nodiscard]] StatsSettings PartSettings(const TimeScale& scale, const DetectionParameters& parameters,
                                         const std::string& input, const PartFacts& facts);

/// A film measured in parts.
struct JoinedStats {
    Stats stats; ///< as of a run on the whole film, but for what decides
    MediaInfo media;
    bool breaksOff = false; ///< the film's file ends early
};

/// All parts of one film, in any order. HostError, with the names of the tables, when one is missing, given
/// twice, no part, or of another film, number of parts or parameters; when one does not begin with the
/// picture that the one before ends with. Frames are counted on from the part before, should that have fewer
/// than its packets announced.
[[nodiscard]] JoinedStats JoinParts(std::vector<Stats> parts);

} // namespace scenedetect
