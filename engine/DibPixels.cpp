// The pixels of a Dib: where they lie, reading and writing them.
#include "engine/BitmapHeader.h"
#include "engine/Dib.h"
#include "support/DebugLog.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace scenedetect {

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

std::optional<std::int64_t> Dib::PixelOffset(std::int32_t x, std::int32_t y) const {
    if (!IsValid() || x < 0 || x >= info->biWidth || y < 0 || y >= RowCount(*info)) {
        DebugPrint(L"Dib::PixelAddress invalid pixel\n");
        return std::nullopt;
    }
    return RowOffset(y) + std::int64_t{x} * PixelSize();
}

std::uint8_t* Dib::PixelAddress(std::int32_t x, std::int32_t y) {
    return const_cast<std::uint8_t*>(std::as_const(*this).PixelAddress(x, y));
}

const std::uint8_t* Dib::PixelAddress(std::int32_t x, std::int32_t y) const {
    const std::optional<std::int64_t> offset = PixelOffset(x, y);
    if (!offset)
        return nullptr;
    if (*offset + PixelSize() > static_cast<std::int64_t>(bitsExtent)) {
        DebugPrint(L"Dib::PixelAddress invalid pixel\n");
        return nullptr;
    }
    return bits + *offset;
}

std::uint32_t Dib::GetPixel(std::int32_t x, std::int32_t y) const {
    const std::optional<std::int64_t> offset = PixelOffset(x, y);
    if (!offset)
        return 0;
    const int size = PixelSize();
    std::uint32_t value = 0;
    for (int i = 0; i < size; ++i) {
        const auto at = static_cast<std::uint64_t>(*offset + i);
        const std::uint32_t byte = at < bitsExtent ? bits[at] : 0;
        // Deliberate: three-byte pixels read the other way round than all others.
        value |= byte << (size == 3 ? 16 - 8 * i : 8 * i);
    }
    return value;
}

void Dib::SetPixel(std::int32_t x, std::int32_t y, std::uint32_t value) {
    const std::optional<std::int64_t> offset = PixelOffset(x, y);
    if (!offset)
        return;
    const int size = PixelSize();
    for (int i = 0; i < size; ++i) {
        const auto at = static_cast<std::uint64_t>(*offset + i);
        if (at < bitsExtent)
            bits[at] = static_cast<std::uint8_t>(value >> (size == 3 ? 16 - 8 * i : 8 * i));
    }
}

void Dib::CopyRow(std::int64_t from, std::int64_t to) {
    const auto existing = [this](std::int64_t row) {
        return std::clamp<std::int64_t>(static_cast<std::int64_t>(bitsExtent) - RowOffset(row), 0,
                                        GetRowBytes());
    };
    const std::int64_t target = existing(to);
    const std::int64_t copied = std::min(existing(from), target);
    if (target == 0)
        return;
    std::uint8_t* const row = bits + RowOffset(to);
    if (copied != 0)
        std::memmove(row, bits + RowOffset(from), static_cast<std::size_t>(copied));
    std::memset(row + copied, 0, static_cast<std::size_t>(target - copied));
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
