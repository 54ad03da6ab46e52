// The pixels of a Dib: where they lie, reading and writing them.
#include "engine/BitmapHeader.h"
#include "engine/Dib.h"
#include "support/DebugLog.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace scenedetect {
namespace {

/// Of a pixel's `i`-th byte in its value. Deliberate: those of three-byte pixels go the other way round than
/// all others.
int ShiftOf(int i, int size) {
    return size == 3 ? 16 - 8 * i : 8 * i;
}

} // namespace

int Dib::PixelSize() const {
    switch (GetBitCount()) {
    case 1:
    case 4:
    case 8:
        return 1;
    case 16:
        return 2;
    case 24:
        return 3;
    case 32:
        return 4;
    default:
        DebugPrint(L"Dib::PixelSize: unexpected biBitCount\n");
        return 1;
    }
}

std::int64_t Dib::RowOffset(std::int64_t y) const {
    return (info->biHeight < 0 ? y : info->biHeight - y - 1) * GetRowBytes();
}

std::optional<Dib::PixelPlace> Dib::FindPixel(std::int32_t x, std::int32_t y) const {
    if (!IsValid() || x < 0 || x >= info->biWidth || y < 0 || y >= RowCount(*info)) {
        DebugPrint(L"Dib::PixelAddress invalid pixel\n");
        return std::nullopt;
    }
    const int size = PixelSize();
    return PixelPlace{RowOffset(y) + std::int64_t{x} * size, size};
}

std::uint8_t* Dib::PixelAddress(std::int32_t x, std::int32_t y) {
    return const_cast<std::uint8_t*>(std::as_const(*this).PixelAddress(x, y));
}

const std::uint8_t* Dib::PixelAddress(std::int32_t x, std::int32_t y) const {
    const std::optional<PixelPlace> place = FindPixel(x, y);
    if (!place)
        return nullptr;
    if (place->offset + place->size > static_cast<std::int64_t>(bitsExtent)) {
        DebugPrint(L"Dib::PixelAddress invalid pixel\n");
        return nullptr;
    }
    return bits + place->offset;
}

std::uint32_t Dib::GetPixel(std::int32_t x, std::int32_t y) const {
    const std::optional<PixelPlace> place = FindPixel(x, y);
    if (!place)
        return 0;
    std::uint32_t value = 0;
    for (int i = 0; i < place->size; ++i) {
        const auto at = static_cast<std::uint64_t>(place->offset + i);
        const std::uint32_t byte = at < bitsExtent ? bits[at] : 0;
        value |= byte << ShiftOf(i, place->size);
    }
    return value;
}

void Dib::SetPixel(std::int32_t x, std::int32_t y, std::uint32_t value) {
    const std::optional<PixelPlace> place = FindPixel(x, y);
    if (!place)
        return;
    for (int i = 0; i < place->size; ++i) {
        const auto at = static_cast<std::uint64_t>(place->offset + i);
        if (at < bitsExtent)
            bits[at] = static_cast<std::uint8_t>(value >> ShiftOf(i, place->size));
    }
}

std::span<std::uint8_t> Dib::ExistingRow(std::int64_t y) const {
    const std::int64_t offset = RowOffset(y);
    const std::int64_t rest = static_cast<std::int64_t>(bitsExtent) - offset;
    // Pixels may lie within a header that calls itself shorter than it is, and change its height.
    if (offset < 0 || rest <= 0)
        return {};
    return {bits + offset, static_cast<std::size_t>(std::min(GetRowBytes(), rest))};
}

void Dib::CopyRow(std::int64_t from, std::int64_t to) {
    const std::span<std::uint8_t> source = ExistingRow(from);
    const std::span<std::uint8_t> target = ExistingRow(to);
    const std::size_t copied = std::min(source.size(), target.size());
    if (copied != 0)
        std::memmove(target.data(), source.data(), copied);
    std::ranges::fill(target.subspan(copied), std::uint8_t{0});
}

void Dib::DoubleField(std::int32_t field) {
    constexpr std::int64_t kLeastRows = 240;
    if (!IsValid() || GetRowBytes() == 0 || field < 0 || field > 1)
        return;
    const std::int64_t rows = RowCount(*info);
    if (rows < kLeastRows)
        return;
    for (std::int64_t j = 0; j < rows / 2; ++j)
        CopyRow(2 * j + field, 2 * j - field + 1);
}

} // namespace scenedetect
