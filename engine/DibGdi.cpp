// To and from the bitmaps of a graphics device.
#include "engine/BitmapHeader.h"
#include "engine/Dib.h"
#include "support/DebugLog.h"

#include <algorithm>

namespace scenedetect {
namespace {

BITMAPINFO* AsBitmapInfo(BITMAPINFOHEADER* header) {
    return reinterpret_cast<BITMAPINFO*>(header);
}

} // namespace

bool Dib::CreateFromBitmap(HBITMAP bitmap, HDC dc) {
    Release();
    BITMAP description{};
    if (GetObjectW(bitmap, sizeof description, &description) == 0)
        return false;
    const BITMAPINFOHEADER header = HeaderOf(description);
    const std::int64_t headerSize = HeaderSize(header);
    const std::int64_t bitsSize = BitsSize(header);
    auto* block = static_cast<std::uint8_t*>(AllocateBlock(headerSize + bitsSize));
    if (block == nullptr) {
        DebugPrint(L"Dib::CreateFromBitmap #1: malloc failed\n");
        return false;
    }
    OwnWhole(block, headerSize, bitsSize);
    *info = header;
    GetDIBits(dc, bitmap, 0, static_cast<UINT>(RowCount(header)), bits, AsBitmapInfo(info), DIB_RGB_COLORS);
    return true;
}

HBITMAP Dib::CreateDDB(HDC dc) const {
    if (!IsValid())
        return nullptr;
    // The system reads what the header announces: where that is not all there, zeros stand in for the rest.
    const std::int64_t pixelBytes = std::max(GetRowBytes() * RowCount(*info), GetBitsSize());
    const Dib* picture = this;
    Dib whole;
    if (GetHeaderSize() > static_cast<std::int64_t>(infoExtent) ||
        pixelBytes > static_cast<std::int64_t>(bitsExtent)) {
        if (!CopyBlocks(GetHeaderSize(), pixelBytes, whole))
            return nullptr;
        picture = &whole;
    }
    return CreateDIBitmap(dc, picture->info, CBM_INIT, picture->bits, AsBitmapInfo(picture->info),
                          paletteIndices ? DIB_PAL_COLORS : DIB_RGB_COLORS);
}

} // namespace scenedetect
