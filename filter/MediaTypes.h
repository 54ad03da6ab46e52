// Questions about a media type: its bitmap header, frame duration, codec family, and a one-line description.
#pragma once

#include <dshow.h>

#include <cstdint>
#include <string>

namespace scenedetect {

// All of these read only what the format block holds: a field beyond cbFormat counts as absent.

/// The bitmap header inside the format block of the five video formats; null for any other format type and
/// for a block too short to hold one. Belongs to `type`, and is writable when the type is.
[[nodiscard]] BITMAPINFOHEADER* GetBitmapHeader(AM_MEDIA_TYPE& type);
[[nodiscard]] const BITMAPINFOHEADER* GetBitmapHeader(const AM_MEDIA_TYPE& type);
/// Bytes of the format block from the bitmap header to its end: header, colour table, masks.
[[nodiscard]] std::size_t GetBitmapHeaderExtent(const AM_MEDIA_TYPE& type);

/// AvgTimePerFrame in 100 ns for the five video formats, else 0.
[[nodiscard]] REFERENCE_TIME GetFrameDuration(const AM_MEDIA_TYPE& type);
/// The same, or 1000000 when that is below 1; for wave formats the length of one sample in 100 ns.
[[nodiscard]] REFERENCE_TIME GetFrameDurationOrDefault(const AM_MEDIA_TYPE& type);
/// Bits per second; 0 when unknown.
[[nodiscard]] std::uint64_t GetDataRate(const AM_MEDIA_TYPE& type);

[[nodiscard]] bool IsVideo(const AM_MEDIA_TYPE& type);
/// The FOURCC of a video type (biCompression) or of a wave type (first word of the subtype); false, with
/// `fourcc` untouched, for any other.
[[nodiscard]] bool GetFourcc(const AM_MEDIA_TYPE& type, DWORD& fourcc);
/// Whether the FOURCC is "dvsd" or "DVSD"; the subtype is not looked at.
[[nodiscard]] bool IsDV(const AM_MEDIA_TYPE& type);
/// Whether the format block holds a wave format (at least up to its bits per sample).
[[nodiscard]] bool HasWaveFormat(const AM_MEDIA_TYPE& type);
/// 1 or 2 for MPEG audio of that version, else 0.
[[nodiscard]] int GetMpegAudioVersion(const AM_MEDIA_TYPE& type);

// Codec families. `alsoFormatless` accepts types that carry no format block, too.
[[nodiscard]] bool IsMpeg4Part2(const AM_MEDIA_TYPE& type, bool alsoFormatless);
[[nodiscard]] bool IsH264(const AM_MEDIA_TYPE& type, bool alsoFormatless);
[[nodiscard]] bool IsPlainH264(const AM_MEDIA_TYPE& type);
[[nodiscard]] bool IsDivX(const AM_MEDIA_TYPE& type);
[[nodiscard]] bool IsXvid(const AM_MEDIA_TYPE& type);
[[nodiscard]] bool IsSedg(const AM_MEDIA_TYPE& type);
[[nodiscard]] bool IsWindowsMediaVideo(const AM_MEDIA_TYPE& type);

/// One line for the diagnostic log, such as "Video 720-576-24 tpf: 40 dr: 0".
[[nodiscard]] std::wstring Describe(const AM_MEDIA_TYPE& type);

} // namespace scenedetect
