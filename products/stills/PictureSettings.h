// Which pictures of scenes are wanted, and how they are named.
#pragma once

#include "products/files/NamePattern.h"
#include "products/files/OutputTarget.h"
#include "products/stills/StillPicture.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace scenedetect {

/// A frame of a scene: its first, middle or last, or the one so many after the first (the last, when the
/// scene is shorter).
struct PictureAt {
    enum class Kind { Start, Middle, End, Offset };
    Kind kind = Kind::Start;
    std::int64_t offset = 0;
    std::string word = "start"; ///< as it was written

    /// The sample among those from `begin` on and before `end`.
    [[nodiscard]] std::int64_t Of(std::int64_t begin, std::int64_t end) const;
};

/// "start", "middle", "end" or a number; nothing for anything else.
[[nodiscard]] std::optional<PictureAt> ParsePictureAt(const std::string& word);

/// ".png", ".jpg" or ".bmp".
[[nodiscard]] const char* SuffixOf(StillFormat format);
/// By its name ("png", "jpeg", "jpg", "bmp"); nothing for another.
[[nodiscard]] std::optional<StillFormat> StillFormatOf(const std::string& name);

struct PictureSettings {
    std::string folder; ///< empty: no pictures are wanted
    NamePattern names{"{name}-{scene}"};
    std::vector<PictureAt> at{{}}; ///< with more than one, names end with the word
    StillFormat format = StillFormat::Png;
    int width = 0; ///< 0: as wide as the frame is shown
    Existing existing = Existing::Keep;
};

} // namespace scenedetect
