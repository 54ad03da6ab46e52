// A logical palette of the graphics system as an object: the holder of its handle.
#pragma once

#include "support/Object.h"

#include <windows.h>

#include <wingdi.h>

#include <span>

namespace scenedetect {

/// Owns one palette or none. One thread at a time.
class GdiPalette : public Object {
  public:
    GdiPalette() = default;
    GdiPalette(const GdiPalette&) = delete;
    GdiPalette& operator=(const GdiPalette&) = delete;
    ~GdiPalette() override { Delete(); }

    [[nodiscard]] HPALETTE Handle() const { return m_handle; }
    /// Makes a palette of these entries, of which a palette has 1 to 256, in place of the one before. False,
    /// and none, when the system refuses.
    [[nodiscard]] bool CreatePalette(std::span<const PALETTEENTRY> entries);
    /// Gives the palette that many entries, these ones. False when the system refuses.
    bool Replace(std::span<const PALETTEENTRY> entries);
    void Delete();

  private:
    HPALETTE m_handle = nullptr;
};

} // namespace scenedetect
