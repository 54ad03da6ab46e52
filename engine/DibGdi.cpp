// To and from the bitmaps of a graphics device.
#include "engine/BitmapHeader.h"
#include "engine/Dib.h"
#include "support/DebugLog.h"

#include <cstdlib>
#include <cstring>

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
    AdoptWhole(block, headerSize, bitsSize);
    *info = header;
    GetDIBits(dc, bitmap, 0, static_cast<UINT>(RowCount(header)), bits, AsBitmapInfo(info), DIB_RGB_COLORS);
    return true;
}

HBITMAP Dib::CreateDDB(HDC dc) const {
    // The system reads what the header announces, so all of that has to be there.
    const bool isWhole = IsValid() && GetHeaderSize() <= static_cast<std::int64_t>(infoExtent) &&
                         GetRowBytes() * RowCount(*info) <= static_cast<std::int64_t>(bitsExtent) &&
                         GetBitsSize() <= static_cast<std::int64_t>(bitsExtent);
    if (!isWhole)
        return nullptr;
    return CreateDIBitmap(dc, info, CBM_INIT, bits, AsBitmapInfo(info),
                          paletteIndices ? DIB_PAL_COLORS : DIB_RGB_COLORS);
}

} // namespace scenedetect
