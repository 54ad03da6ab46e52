#include "engine/BitmapHeader.h"

#include <algorithm>

namespace scenedetect {

std::uint32_t ColourCount(const BITMAPINFOHEADER& header) {
    if (header.biClrUsed != 0)
        return header.biClrUsed;
    switch (header.biBitCount) {
    case 1:
    case 4:
    case 8:
        return 1u << header.biBitCount;
    default:
        return 0;
    }
}

std::int64_t HeaderSize(const BITMAPINFOHEADER& header) {
    constexpr std::int64_t kMaskBytes = 12;
    return std::int64_t{header.biSize} + std::int64_t{4} * ColourCount(header) +
           (header.biCompression == BI_BITFIELDS ? kMaskBytes : 0);
}

std::int64_t RowBytes(const BITMAPINFOHEADER& header) {
    constexpr std::int64_t kLongestRow = std::int64_t{1} << 31;
    if (header.biWidth < 0 || (header.biCompression != BI_RGB && header.biCompression != BI_BITFIELDS))
        return 0;
    const std::int64_t bits = std::int64_t{header.biBitCount} * header.biWidth;
    return std::min(((bits + 7) / 8 + 3) / 4 * 4, kLongestRow);
}

std::int64_t RowCount(const BITMAPINFOHEADER& header) {
    const std::int64_t height = header.biHeight;
    return height < 0 ? -height : height;
}

std::int64_t BitsSize(const BITMAPINFOHEADER& header) {
    return header.biSizeImage != 0 ? std::int64_t{header.biSizeImage} : RowBytes(header) * RowCount(header);
}

std::optional<std::size_t> StoredSize(const BITMAPINFOHEADER& header) {
    const std::int64_t size = HeaderSize(header) + BitsSize(header);
    return size <= kMostBlockBytes ? std::optional(static_cast<std::size_t>(size)) : std::nullopt;
}

BITMAPINFOHEADER HeaderOf(const BITMAP& bitmap) {
    BITMAPINFOHEADER header{};
    header.biSize = sizeof header;
    header.biWidth = bitmap.bmWidth;
    header.biHeight = bitmap.bmHeight;
    header.biPlanes = bitmap.bmPlanes;
    header.biBitCount = bitmap.bmBitsPixel;
    header.biCompression = BI_RGB;
    if (header.biPlanes > 1) {
        header.biBitCount = static_cast<WORD>(bitmap.bmPlanes * bitmap.bmBitsPixel);
        header.biPlanes = 1;
    }
    return header;
}

} // namespace scenedetect
