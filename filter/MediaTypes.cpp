#include "filter/MediaTypes.h"

#include "baseclasses/FourCCMap.h"

#include <dvdmedia.h>
#include <mmreg.h>

#include <cstddef>
#include <cstring>
#include <span>

namespace scenedetect {

namespace {

// Where the fields lie in the format block of every video format.
constexpr std::size_t kBitRateOffset = offsetof(VIDEOINFOHEADER, dwBitRate);
constexpr std::size_t kFrameDurationOffset = offsetof(VIDEOINFOHEADER, AvgTimePerFrame);
constexpr std::size_t kVideoInfoHeaderOffset = offsetof(VIDEOINFOHEADER, bmiHeader);
constexpr std::size_t kVideoInfo2HeaderOffset = offsetof(VIDEOINFOHEADER2, bmiHeader);
static_assert(kBitRateOffset == 32 && kFrameDurationOffset == 40 && kVideoInfoHeaderOffset == 48 &&
              kVideoInfo2HeaderOffset == 72);

// ... and in that of wave formats.
constexpr std::size_t kWaveFormatSize = 16; // up to wBitsPerSample; cbSize may be missing
constexpr std::size_t kMpegHeadBitRateOffset = 20;

constexpr REFERENCE_TIME kUnitsPerSecond = 10000000;
constexpr REFERENCE_TIME kDefaultFrameDuration = 1000000;

// A further video format of the layout of FORMAT_VideoInfo, met with MPEG-4 sources.
constexpr GUID kFormatMpeg4Video = {
    0xE1C79847, 0x41CF, 0x4477, {0x90, 0x87, 0x12, 0xC8, 0x79, 0xCC, 0x3D, 0x60}};
constexpr GUID kSubtypeMpeg2Audio = {
    0xE06D802B, 0xDB46, 0x11CF, {0xB4, 0xD1, 0x00, 0x80, 0x5F, 0x6C, 0xBB, 0xEA}};

constexpr GUID Fourcc(const char (&letters)[5]) {
    return FOURCCMap(MAKEFOURCC(letters[0], letters[1], letters[2], letters[3]));
}

template <typename Field>
bool ReadFormat(const AM_MEDIA_TYPE& type, std::size_t offset, Field& field) {
    if (!type.pbFormat || type.cbFormat < offset + sizeof(Field))
        return false;
    std::memcpy(&field, type.pbFormat + offset, sizeof(Field));
    return true;
}

// The bitmap header's offset in the format block; 0 for a format type without one.
std::size_t HeaderOffset(const AM_MEDIA_TYPE& type) {
    const GUID& format = type.formattype;
    if (format == FORMAT_VideoInfo || format == FORMAT_MPEGVideo || format == kFormatMpeg4Video)
        return kVideoInfoHeaderOffset;
    if (format == FORMAT_VideoInfo2 || format == FORMAT_MPEG2Video)
        return kVideoInfo2HeaderOffset;
    return 0;
}

template <typename Field>
Field WaveField(const AM_MEDIA_TYPE& type, std::size_t offset) {
    Field field{};
    (void)ReadFormat(type, offset, field);
    return field;
}

bool Contains(std::span<const GUID> set, const GUID& id) {
    for (const GUID& member : set)
        if (member == id)
            return true;
    return false;
}

bool IsOfFamily(const AM_MEDIA_TYPE& type, std::span<const GUID> subtypes, std::span<const GUID> formats,
                bool alsoFormatless = false) {
    return type.majortype == MEDIATYPE_Video && Contains(subtypes, type.subtype) &&
           (Contains(formats, type.formattype) ||
            (alsoFormatless && (type.formattype == FORMAT_None || type.formattype == GUID_NULL)));
}

std::span<const GUID> PlainVideoFormats() {
    static const GUID kFormats[] = {FORMAT_VideoInfo, FORMAT_VideoInfo2};
    return kFormats;
}

std::span<const GUID> VideoFormatsWithMpeg4() {
    static const GUID kFormats[] = {FORMAT_VideoInfo, FORMAT_VideoInfo2, kFormatMpeg4Video};
    return kFormats;
}

} // namespace

BITMAPINFOHEADER* GetBitmapHeader(AM_MEDIA_TYPE& type) {
    return GetBitmapHeaderExtent(type)
               ? reinterpret_cast<BITMAPINFOHEADER*>(type.pbFormat + HeaderOffset(type))
               : nullptr;
}

const BITMAPINFOHEADER* GetBitmapHeader(const AM_MEDIA_TYPE& type) {
    return GetBitmapHeader(const_cast<AM_MEDIA_TYPE&>(type));
}

std::size_t GetBitmapHeaderExtent(const AM_MEDIA_TYPE& type) {
    const std::size_t offset = HeaderOffset(type);
    if (!offset || !type.pbFormat || type.cbFormat < offset + sizeof(BITMAPINFOHEADER))
        return 0;
    return type.cbFormat - offset;
}

REFERENCE_TIME GetFrameDuration(const AM_MEDIA_TYPE& type) {
    REFERENCE_TIME duration = 0;
    return HeaderOffset(type) && ReadFormat(type, kFrameDurationOffset, duration) ? duration : 0;
}

REFERENCE_TIME GetFrameDurationOrDefault(const AM_MEDIA_TYPE& type) {
    if (HasWaveFormat(type)) {
        const auto rate = WaveField<DWORD>(type, offsetof(WAVEFORMATEX, nSamplesPerSec));
        return rate ? kUnitsPerSecond / rate : kDefaultFrameDuration;
    }
    const REFERENCE_TIME duration = GetFrameDuration(type);
    return duration < 1 ? kDefaultFrameDuration : duration;
}

std::uint64_t GetDataRate(const AM_MEDIA_TYPE& type) {
    DWORD rate = 0;
    if (HeaderOffset(type))
        return ReadFormat(type, kBitRateOffset, rate) ? rate : 0;
    if (type.majortype != MEDIATYPE_Audio || !HasWaveFormat(type))
        return 0;
    if (GetMpegAudioVersion(type))
        return WaveField<DWORD>(type, kMpegHeadBitRateOffset);
    return std::uint64_t{8} * WaveField<DWORD>(type, offsetof(WAVEFORMATEX, nAvgBytesPerSec));
}

bool IsVideo(const AM_MEDIA_TYPE& type) {
    return type.majortype == MEDIATYPE_Video || Contains(PlainVideoFormats(), type.formattype);
}

bool GetFourcc(const AM_MEDIA_TYPE& type, DWORD& fourcc) {
    if (type.majortype == MEDIATYPE_Video && Contains(PlainVideoFormats(), type.formattype))
        return ReadFormat(type, HeaderOffset(type) + offsetof(BITMAPINFOHEADER, biCompression), fourcc);
    if (type.majortype == MEDIATYPE_Audio && type.formattype == FORMAT_WaveFormatEx) {
        fourcc = type.subtype.Data1;
        return true;
    }
    return false;
}

bool IsDV(const AM_MEDIA_TYPE& type) {
    DWORD fourcc = 0;
    return GetFourcc(type, fourcc) &&
           (fourcc == MAKEFOURCC('D', 'V', 'S', 'D') || fourcc == MAKEFOURCC('d', 'v', 's', 'd'));
}

bool HasWaveFormat(const AM_MEDIA_TYPE& type) {
    return type.formattype == FORMAT_WaveFormatEx && type.pbFormat && type.cbFormat >= kWaveFormatSize;
}

int GetMpegAudioVersion(const AM_MEDIA_TYPE& type) {
    if (type.majortype != MEDIATYPE_Audio || !HasWaveFormat(type))
        return 0;
    if (type.subtype == kSubtypeMpeg2Audio)
        return 2;
    return WaveField<WORD>(type, offsetof(WAVEFORMATEX, wFormatTag)) == WAVE_FORMAT_MPEG ? 1 : 0;
}

bool IsMpeg4Part2(const AM_MEDIA_TYPE& type, bool alsoFormatless) {
    static constexpr GUID kSubtypes[] = {
        Fourcc("MP4S"),
        Fourcc("MP43"),
        Fourcc("MPG4"),
        Fourcc("MP42"),
        Fourcc("M4S2"),
        {0xE7D5085C, 0x3752, 0x4E4C, {0x8C, 0xB2, 0xA9, 0x08, 0x6A, 0x4B, 0xD2, 0x73}},
        {0x50AD890E, 0xDC99, 0x4B4C, {0x80, 0x3C, 0x52, 0x54, 0xF5, 0x29, 0x5F, 0x90}},
        Fourcc("MP4V"),
        Fourcc("mp4v"),
    };
    return IsOfFamily(type, kSubtypes, VideoFormatsWithMpeg4(), alsoFormatless);
}

bool IsH264(const AM_MEDIA_TYPE& type, bool alsoFormatless) {
    static constexpr GUID kSubtypes[] = {
        {0xFCA6C675, 0xB44B, 0x420D, {0xAA, 0x88, 0x4B, 0x1F, 0x06, 0x4F, 0x2D, 0x56}},
        {0xD4C7CDA0, 0x73A5, 0x48C0, {0xA0, 0xEC, 0xF0, 0xD7, 0xED, 0x8E, 0x98, 0xE4}},
        {0x22D0BF9C, 0x2B17, 0x4413, {0x8F, 0x95, 0xC0, 0x4E, 0xB3, 0x98, 0x1B, 0x28}},
        {0x10751631, 0xC573, 0x423F, {0x95, 0xC0, 0x43, 0xCF, 0x57, 0x1B, 0x5C, 0x1F}},
        Fourcc("H264"),
    };
    return IsOfFamily(type, kSubtypes, VideoFormatsWithMpeg4(), alsoFormatless);
}

bool IsPlainH264(const AM_MEDIA_TYPE& type) {
    static constexpr GUID kSubtypes[] = {Fourcc("H264")};
    return IsOfFamily(type, kSubtypes, PlainVideoFormats());
}

bool IsDivX(const AM_MEDIA_TYPE& type) {
    static constexpr GUID kSubtypes[] = {Fourcc("DIVX"), Fourcc("DIV3"), Fourcc("DX50")};
    return IsOfFamily(type, kSubtypes, VideoFormatsWithMpeg4());
}

bool IsXvid(const AM_MEDIA_TYPE& type) {
    static constexpr GUID kSubtypes[] = {Fourcc("XVID")};
    return IsOfFamily(type, kSubtypes, PlainVideoFormats());
}

bool IsSedg(const AM_MEDIA_TYPE& type) {
    static constexpr GUID kSubtypes[] = {Fourcc("SEDG")};
    return IsOfFamily(type, kSubtypes, PlainVideoFormats());
}

bool IsWindowsMediaVideo(const AM_MEDIA_TYPE& type) {
    static constexpr GUID kSubtypes[] = {Fourcc("WMV1"), Fourcc("WMV2"), Fourcc("WMV3")};
    return IsOfFamily(type, kSubtypes, PlainVideoFormats());
}

} // namespace scenedetect
