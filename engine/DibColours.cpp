// The colour table of a Dib: reading it, and the two tables that it can build.
#include "engine/Dib.h"

#include <algorithm>
#include <cstring>

namespace scenedetect {
namespace {

// Deliberate: the table begins here even when the header calls itself longer.
constexpr std::size_t kTableOffset = sizeof(BITMAPINFOHEADER);

/// A colour or a mask. Deliberate: it counts as far as there are bytes, whatever number the header announces.
template <typename Entry>
Entry ReadEntry(const BITMAPINFOHEADER* info, std::size_t infoExtent, std::uint32_t index) {
    Entry entry{};
    const std::uint64_t offset = kTableOffset + std::uint64_t{index} * sizeof entry;
    if (info != nullptr && offset < infoExtent)
        std::memcpy(&entry, reinterpret_cast<const std::uint8_t*>(info) + offset,
                    std::min<std::size_t>(sizeof entry, infoExtent - static_cast<std::size_t>(offset)));
    return entry;
}

} // namespace

RGBQUAD* Dib::GetColourTable() const {
    return info != nullptr ? reinterpret_cast<RGBQUAD*>(reinterpret_cast<std::uint8_t*>(info) + kTableOffset)
                           : nullptr;
}

std::uint32_t Dib::ExistingColours() const {
    if (info == nullptr)
        return 0;
    const std::size_t room = (infoExtent - kTableOffset) / sizeof(RGBQUAD);
    return static_cast<std::uint32_t>(std::min<std::size_t>(room, GetColourCount()));
}

RGBQUAD Dib::GetColour(std::uint32_t index) const {
    return ReadEntry<RGBQUAD>(info, infoExtent, index);
}

DWORD Dib::GetMask(int index) const {
    const bool isMask = index >= 0 && index < 3;
    return isMask ? ReadEntry<DWORD>(info, infoExtent, static_cast<std::uint32_t>(index)) : 0;
}

void Dib::SetColourRamp(std::int32_t count, COLORREF first, COLORREF last) {
    constexpr BYTE kLightGrey = 192;
    const std::int64_t n = std::clamp<std::int64_t>(count, 0, GetColourCount());
    const auto mix = [n](BYTE from, BYTE to, std::int64_t i) {
        // Deliberate: the first colour counts n times over n - 1 steps, so that entry 0 is brighter than it
        // and may wrap.
        return static_cast<BYTE>((from * n + i * (to - from)) / std::max<std::int64_t>(n - 1, 1));
    };
    RGBQUAD* const table = GetColourTable();
    const std::uint32_t existing = ExistingColours();
    for (std::uint32_t i = 0; i < existing; ++i) {
        RGBQUAD& entry = table[i];
        if (i < n) {
            entry.rgbRed = mix(GetRValue(first), GetRValue(last), i);
            entry.rgbGreen = mix(GetGValue(first), GetGValue(last), i);
            entry.rgbBlue = mix(GetBValue(first), GetBValue(last), i);
        } else {
            entry.rgbRed = entry.rgbGreen = entry.rgbBlue = kLightGrey;
        }
    }
}

void Dib::SetColourCube() {
    constexpr std::uint32_t kCubeColours = 256;
    const std::uint32_t filled = std::min(ExistingColours(), kCubeColours);
    RGBQUAD* const table = GetColourTable();
    for (std::uint32_t i = 0; i < filled; ++i) {
        table[i].rgbBlue = static_cast<BYTE>(85 * (i % 4));
        table[i].rgbRed = static_cast<BYTE>(255 * (i / 4 % 8) / 7);
        table[i].rgbGreen = static_cast<BYTE>(255 * (i / 32) / 7);
    }
}

bool Dib::HasGreyPalette() const {
    for (std::uint32_t i = 0; i < GetColourCount(); ++i) {
        const RGBQUAD colour = GetColour(i);
        if (colour.rgbBlue != i || colour.rgbGreen != i || colour.rgbRed != i)
            return false;
    }
    return true;
}

} // namespace scenedetect
