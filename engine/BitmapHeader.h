// The sizes that a bitmap header announces: colour table, header block, rows, pixel data.
#pragma once

#include <windows.h>

#include <wingdi.h>

#include <cstddef>
#include <cstdint>
#include <optional>

namespace scenedetect {

/// No bitmap has more bytes: sizes beyond this come from broken headers.
inline constexpr std::int64_t kMostBlockBytes = INT32_MAX;

/// Entries of the colour table: `biClrUsed`, or what the bit count implies.
[[nodiscard]] std::uint32_t ColourCount(const BITMAPINFOHEADER& header);

/// Bytes of the header block: `biSize`, the colour table and the bit-field masks.
[[nodiscard]] std::int64_t HeaderSize(const BITMAPINFOHEADER& header);

/// Bytes from one row to the next, a multiple of 4; 0 for anything but `BI_RGB` and `BI_BITFIELDS`, and for
/// a negative width. Rows that would be longer than 2 GiB count as 2 GiB, so that products with any height
/// stay within 64 bits.
[[nodiscard]] std::int64_t RowBytes(const BITMAPINFOHEADER& header);

/// Rows of the picture, whichever way up it lies.
[[nodiscard]] std::int64_t RowCount(const BITMAPINFOHEADER& header);

/// Bytes of pixel data: `biSizeImage`, or rows times row bytes when that is 0.
[[nodiscard]] std::int64_t BitsSize(const BITMAPINFOHEADER& header);

/// Bytes of the header block and the pixel data together; nothing when no bitmap has that many.
[[nodiscard]] std::optional<std::size_t> StoredSize(const BITMAPINFOHEADER& header);

/// The header under which the content of a device's bitmap is asked for: uncompressed, several planes taken
/// for one of as many times the bits.
[[nodiscard]] BITMAPINFOHEADER HeaderOf(const BITMAP& bitmap);

} // namespace scenedetect
