#include "support/palette/GdiPalette.h"

#include <algorithm>
#include <cstddef>

namespace scenedetect {
namespace {

constexpr std::size_t kMostColours = 256;
constexpr WORD kPaletteVersion = 0x300;

// A description with room for all entries that there can be.
struct Description {
    WORD version;
    WORD count;
    PALETTEENTRY entries[kMostColours];
};
static_assert(offsetof(Description, entries) == offsetof(LOGPALETTE, palPalEntry));

} // namespace

bool GdiPalette::CreatePalette(std::span<const PALETTEENTRY> entries) {
    Delete();
    if (entries.empty() || entries.size() > kMostColours)
        return false;
    Description description = {kPaletteVersion, static_cast<WORD>(entries.size()), {}};
    std::copy(entries.begin(), entries.end(), description.entries);
    m_handle = ::CreatePalette(reinterpret_cast<const LOGPALETTE*>(&description));
    return m_handle != nullptr;
}

bool GdiPalette::Replace(std::span<const PALETTEENTRY> entries) {
    const auto count = static_cast<UINT>(entries.size());
    return m_handle != nullptr && ResizePalette(m_handle, count) != FALSE &&
           SetPaletteEntries(m_handle, 0, count, entries.data()) == count;
}

void GdiPalette::Delete() {
    if (m_handle != nullptr)
        DeleteObject(m_handle);
    m_handle = nullptr;
}

} // namespace scenedetect
