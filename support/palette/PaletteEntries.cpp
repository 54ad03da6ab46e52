#include "support/palette/PaletteEntries.h"

#include <algorithm>

namespace scenedetect {
namespace {

constexpr std::int32_t kMostEntries = 256;

PALETTEENTRY Grey(std::uint32_t level) {
    const auto low = static_cast<BYTE>(level);
    return {low, low, low, PC_NOCOLLAPSE};
}

} // namespace

PaletteEntries EntriesOf(const Dib& dib) {
    // Deliberate: all that a palette can have, however few colours the picture announces.
    PaletteEntries entries;
    for (std::uint32_t i = 0; i < kMostEntries; ++i) {
        const RGBQUAD colour = dib.GetColour(i);
        entries.push_back({colour.rgbRed, colour.rgbGreen, colour.rgbBlue, 0});
    }
    return entries;
}

PaletteEntries GreyRampEntries(std::int32_t count) {
    PaletteEntries entries;
    if (count < 0 || count > kMostEntries)
        return entries;
    for (std::int32_t i = 0; i < (count == 0 ? kMostEntries : count); ++i)
        entries.push_back(Grey(static_cast<std::uint32_t>(i)));
    return entries;
}

std::span<PALETTEENTRY> MiddleEntries(std::span<PALETTEENTRY> entries, std::int32_t staticColours) {
    const auto atEitherEnd = static_cast<std::size_t>(std::max(staticColours, 0) / 2);
    if (2 * atEitherEnd >= entries.size())
        return {};
    return entries.subspan(atEitherEnd, entries.size() - 2 * atEitherEnd);
}

void MarkMiddleEntries(std::span<PALETTEENTRY> entries, std::int32_t staticColours) {
    for (PALETTEENTRY& entry : entries)
        entry.peFlags = 0;
    for (PALETTEENTRY& entry : MiddleEntries(entries, staticColours))
        entry.peFlags = PC_NOCOLLAPSE;
}

bool FillGreyScale(std::span<PALETTEENTRY> entries, std::int32_t staticColours, std::int32_t maxGreys) {
    const std::int64_t greys =
        std::min(static_cast<std::int64_t>(entries.size()) - staticColours, std::int64_t{maxGreys});
    if (greys <= 0)
        return false;
    MarkMiddleEntries(entries, staticColours);
    const double step = 255.0 / static_cast<double>(greys);
    double value = 0.0;
    for (PALETTEENTRY& entry : MiddleEntries(entries, staticColours)) {
        entry = Grey(static_cast<std::uint32_t>(value));
        value += step;
    }
    return true;
}

} // namespace scenedetect
