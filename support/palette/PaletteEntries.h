// The arithmetic of palettes: which entries they have.
#pragma once

#include "engine/Dib.h"

#include <cstdint>
#include <span>
#include <vector>

namespace scenedetect {

using PaletteEntries = std::vector<PALETTEENTRY>;

/// 256 entries with the colours of the picture's table, whatever its number of colours; black where its
/// bytes end.
[[nodiscard]] PaletteEntries EntriesOf(const Dib& dib);

/// `count` greys from 0 upwards that are not to be collapsed; a count of 0 means 256. Empty for a count that
/// no palette can have.
[[nodiscard]] PaletteEntries GreyRampEntries(std::int32_t count);

/// The part of a display's palette between its static colours, half of which (rounded down) lie at either
/// end. Nothing when there is no such part.
[[nodiscard]] std::span<PALETTEENTRY> MiddleEntries(std::span<PALETTEENTRY> entries,
                                                    std::int32_t staticColours);

/// Marks the entries between the static colours as not to be collapsed, and no other.
void MarkMiddleEntries(std::span<PALETTEENTRY> entries, std::int32_t staticColours);

/// Marks likewise, and makes the marked entries a scale of greys in steps of 255 / min(entries that are not
/// static, `maxGreys`). Deliberate: with fewer greys than entries the scale passes 255 and wraps to 0.
/// False, and nothing done, when that divisor is not positive.
[[nodiscard]] bool FillGreyScale(std::span<PALETTEENTRY> entries, std::int32_t staticColours,
                                 std::int32_t maxGreys);

} // namespace scenedetect
