#include "products/stills/PictureSettings.h"

#include <algorithm>
#include <array>
#include <charconv>

namespace scenedetect {
namespace {

constexpr std::array kSuffixes = {".png", ".jpg", ".bmp"}; // in the order of StillFormat

} // namespace

const char* SuffixOf(StillFormat format) {
    return kSuffixes[static_cast<std::size_t>(format)];
}

std::optional<StillFormat> StillFormatOf(const std::string& name) {
    for (std::size_t i = 0; i < kSuffixes.size(); ++i)
        if (name == kSuffixes[i] + 1)
            return static_cast<StillFormat>(i);
    return name == "jpeg" ? std::optional(StillFormat::Jpeg) : std::nullopt;
}

std::int64_t PictureAt::Of(std::int64_t begin, std::int64_t end) const {
    switch (kind) {
    case Kind::Start:
        return begin;
    case Kind::Middle:
        return begin + (end - begin) / 2;
    case Kind::End:
        return end - 1;
    case Kind::Offset:
        break;
    }
    return std::min(begin + offset, end - 1);
}

std::optional<PictureAt> ParsePictureAt(const std::string& word) {
    if (word == "start")
        return PictureAt{PictureAt::Kind::Start, 0, word};
    if (word == "middle")
        return PictureAt{PictureAt::Kind::Middle, 0, word};
    if (word == "end")
        return PictureAt{PictureAt::Kind::End, 0, word};
    std::int32_t offset = 0;
    const char* const last = word.data() + word.size();
    const auto [end, error] = std::from_chars(word.data(), last, offset);
    if (error != std::errc{} || end != last || offset < 0)
        return std::nullopt;
    return PictureAt{PictureAt::Kind::Offset, offset, word};
}

} // namespace scenedetect
