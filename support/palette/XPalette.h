// A colour palette for displays that show 256 colours.
#pragma once

#include "support/palette/GdiPalette.h"

#include <cstdint>

namespace scenedetect {

class Dib;

/// Made from a picture's colours, as a ramp of greys, or from the display's own palette. Needs a graphics
/// system: elsewhere every palette fails to be made. One thread at a time.
class XPalette final : public GdiPalette {
  public:
    static const RuntimeClass kRuntimeClass;
    [[nodiscard]] const RuntimeClass& GetRuntimeClass() const override { return kRuntimeClass; }

    /// 256 entries with the colours of the picture. False when the system refuses.
    bool CreateFromDib(const Dib& dib);
    /// `count` greys, 0 meaning 256. False when the system refuses, or for a count that no palette can have.
    bool CreateGreyRamp(std::int32_t count);

    /// Makes the palette that of the display, when `simple`; else takes the display's colours over, with all
    /// but the static ones marked as not to be collapsed. Returns how many entries were realised; 0 when the
    /// device has no palette, or more static colours than a palette can have.
    std::uint32_t SetSystemPalette(HDC dc, bool simple);
    /// Takes the display's colours over, with greys between the static ones: steps of 255 divided by
    /// `maxGreys` or by the number of other colours, whichever is less; does nothing when that is not
    /// positive. The palette must exist.
    void CreateGreyScalePalette(HDC dc, std::int32_t maxGreys);

  private:
    bool CreateLogged(std::span<const PALETTEENTRY> entries);
};

} // namespace scenedetect
