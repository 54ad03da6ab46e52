// Media types for tests, from a few words.
#pragma once

#include "baseclasses/FourCCMap.h"
#include "baseclasses/MediaType.h"

#include <dshow.h>
#include <dvdmedia.h>

#include <cstddef>

namespace scenedetect::testing_support {

/// The bitmap header of an uncompressed or compressed picture.
inline BITMAPINFOHEADER PictureHeader(LONG width, LONG height, WORD bits, DWORD compression) {
    BITMAPINFOHEADER header{};
    header.biSize = sizeof header;
    header.biWidth = width;
    header.biHeight = height;
    header.biPlanes = 1;
    header.biBitCount = bits;
    header.biCompression = compression;
    return header;
}

/// A video type whose block is `Format` (VIDEOINFOHEADER or VIDEOINFOHEADER2).
template <typename Format = VIDEOINFOHEADER>
CMediaType VideoType(const GUID& subtype, const GUID& formatType, const BITMAPINFOHEADER& header,
                     REFERENCE_TIME frameDuration = 400000) {
    Format format{};
    format.AvgTimePerFrame = frameDuration;
    format.dwBitRate = 28800000;
    format.bmiHeader = header;
    CMediaType type;
    type.SetType(&MEDIATYPE_Video);
    type.SetSubtype(&subtype);
    type.SetFormatType(&formatType);
    type.SetFormat(reinterpret_cast<BYTE*>(&format), sizeof format);
    return type;
}

/// A type of the subtype and nothing more; `width` tells types of one subtype apart.
inline CMediaType VideoType(const GUID& subtype, LONG width = 320) {
    return VideoType(subtype, FORMAT_VideoInfo, PictureHeader(width, 0, 0, 0));
}

inline CMediaType FourccType(const char (&letters)[5], LONG width, LONG height, WORD bits,
                             REFERENCE_TIME frameDuration = 400000) {
    const DWORD fourcc = MAKEFOURCC(letters[0], letters[1], letters[2], letters[3]);
    return VideoType(FOURCCMap(fourcc), FORMAT_VideoInfo, PictureHeader(width, height, bits, fourcc),
                     frameDuration);
}

inline CMediaType RgbType(const GUID& subtype, LONG width, LONG height, WORD bits,
                          REFERENCE_TIME frameDuration = 400000) {
    return VideoType(subtype, FORMAT_VideoInfo, PictureHeader(width, height, bits, BI_RGB), frameDuration);
}

inline CMediaType DvType(bool is625 = true, REFERENCE_TIME frameDuration = 400000) {
    return FourccType("dvsd", 720, is625 ? 576 : 480, 24, frameDuration);
}

/// A small picture that most tests can do with.
constexpr LONG kWidth = 64;
constexpr LONG kHeight = 48;
constexpr std::size_t kYuy2Bytes = kWidth * kHeight * 2;
inline CMediaType Yuy2() {
    return FourccType("YUY2", kWidth, kHeight, 16);
}

} // namespace scenedetect::testing_support
