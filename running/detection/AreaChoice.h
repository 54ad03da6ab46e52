// The part of the picture that is compared, as users name it.
#pragma once

#include <array>
#include <string>

namespace scenedetect {

/// Left, top, width and height, each in pixels or in per cent of the picture. The picture is that which the
/// file stores, before it is turned upright or stretched to its aspect.
struct AreaChoice {
    struct Number {
        double value = 0;
        bool isPercent = false;
        friend bool operator==(const Number&, const Number&) = default;
    };

    std::array<Number, 4> numbers{};
    std::string text; ///< as it was given

    /// Whether the picture's size does not matter.
    [[nodiscard]] bool IsInPercent() const;
    friend bool operator==(const AreaChoice&, const AreaChoice&) = default;
};

/// "X,Y,W,H": whole pixels, or per cent with "%" and a fraction if need be. HostError for any other text, and
/// for what reaches beyond any picture.
[[nodiscard]] AreaChoice ParseArea(const std::string& text);
/// What ParseArea says of such a text; empty when it is one.
[[nodiscard]] std::string AreaFault(const std::string& text);

/// In per mille of `seen` pixels, each edge rounded to the nearest: where the area begins, and how far it
/// reaches.
struct AreaExtent {
    int start;
    int length; ///< 1 or more
};
/// Of a picture of which the first `seen` of `stored` pixels can be compared; across, or down. HostError when
/// the area reaches beyond it.
[[nodiscard]] AreaExtent ExtentOf(const AreaChoice& area, bool isDown, int seen, int stored);

} // namespace scenedetect
