#include "filter/MediaTypes.h"

#include "tests/Testing.h"
#include "tests/TypeMaking.h"

#include <mmreg.h>

namespace {

constexpr GUID kMpeg4Video = {0xE1C79847, 0x41CF, 0x4477, {0x90, 0x87, 0x12, 0xC8, 0x79, 0xCC, 0x3D, 0x60}};
constexpr GUID kMpeg2Audio = {0xE06D802B, 0xDB46, 0x11CF, {0xB4, 0xD1, 0x00, 0x80, 0x5F, 0x6C, 0xBB, 0xEA}};

GUID Fourcc(const char (&letters)[5]) {
    return FOURCCMap(MAKEFOURCC(letters[0], letters[1], letters[2], letters[3]));
}

CMediaType WaveType(const GUID& subtype, WORD tag, DWORD rate = 44100) {
    MPEG1WAVEFORMAT format{};
    format.wfx.wFormatTag = tag;
    format.wfx.nChannels = 2;
    format.wfx.nSamplesPerSec = rate;
    format.wfx.wBitsPerSample = 16;
    format.wfx.nAvgBytesPerSec = 24000;
    format.dwHeadBitrate = 384000;
    CMediaType type;
    type.SetType(&MEDIATYPE_Audio);
    type.SetSubtype(&subtype);
    type.SetFormatType(&FORMAT_WaveFormatEx);
    type.SetFormat(reinterpret_cast<BYTE*>(&format), sizeof format);
    return type;
}

TEST(MediaTypes, VideoFieldsAreFoundInEveryVideoFormat) {
    const BITMAPINFOHEADER header = PictureHeader(720, 576, 24, MAKEFOURCC('d', 'v', 's', 'd'));
    const struct {
        const char* name;
        GUID format;
        std::ptrdiff_t offset;
    } cases[] = {
        {"VideoInfo", FORMAT_VideoInfo, 48},   {"MPEGVideo", FORMAT_MPEGVideo, 48},
        {"MPEG-4", kMpeg4Video, 48},           {"VideoInfo2", FORMAT_VideoInfo2, 72},
        {"MPEG2Video", FORMAT_MPEG2Video, 72},
    };
    for (const auto& one : cases) {
        SCOPED_TRACE(one.name);
        CMediaType type = one.offset == 48
                              ? VideoType(MEDIASUBTYPE_None, one.format, header)
                              : VideoType<VIDEOINFOHEADER2>(MEDIASUBTYPE_None, one.format, header);
        AM_MEDIA_TYPE& plain = type;
        ASSERT_NE(GetBitmapHeader(plain), nullptr);
        EXPECT_EQ(reinterpret_cast<BYTE*>(GetBitmapHeader(plain)) - type.pbFormat, one.offset);
        EXPECT_EQ(GetBitmapHeaderExtent(type), sizeof header);
        EXPECT_EQ(GetFrameDuration(type), 400000);
        EXPECT_EQ(GetDataRate(type), 28800000u);
        // The FOURCC counts for the two plain formats only.
        EXPECT_EQ(IsDV(type), one.format == FORMAT_VideoInfo || one.format == FORMAT_VideoInfo2);
    }
}

TEST(MediaTypes, FieldsBeyondTheFormatBlockAreAbsent) {
    CMediaType type = DvType();
    type.cbFormat = 48 + 39; // a byte short of a header
    EXPECT_EQ(GetBitmapHeader(static_cast<AM_MEDIA_TYPE&>(type)), nullptr);
    EXPECT_EQ(GetBitmapHeaderExtent(type), 0u);
    EXPECT_TRUE(IsDV(type)) << "biCompression is still there";
    type.cbFormat = 47;
    EXPECT_EQ(GetFrameDuration(type), 0);
    EXPECT_FALSE(IsDV(type));
    type.cbFormat = 35;
    EXPECT_EQ(GetDataRate(type), 0u);
    CMediaType wave = WaveType(MEDIASUBTYPE_PCM, WAVE_FORMAT_PCM);
    wave.cbFormat = 15;
    EXPECT_EQ(GetFrameDurationOrDefault(wave), 1000000);
    EXPECT_EQ(GetDataRate(wave), 0u);
}

TEST(MediaTypes, FrameDurationHasADefault) {
    EXPECT_EQ(GetFrameDurationOrDefault(DvType(true, 400000)), 400000);
    EXPECT_EQ(GetFrameDurationOrDefault(DvType(true, 0)), 1000000);
    EXPECT_EQ(GetFrameDurationOrDefault(DvType(true, -5)), 1000000);
    EXPECT_EQ(GetFrameDurationOrDefault(CMediaType()), 1000000);
    EXPECT_EQ(GetFrameDurationOrDefault(WaveType(MEDIASUBTYPE_PCM, WAVE_FORMAT_PCM)), 226);
    EXPECT_EQ(GetFrameDurationOrDefault(WaveType(MEDIASUBTYPE_PCM, WAVE_FORMAT_PCM, 1)), 10000000);
    EXPECT_EQ(GetFrameDurationOrDefault(WaveType(MEDIASUBTYPE_PCM, WAVE_FORMAT_PCM, 0)), 1000000);
    EXPECT_EQ(GetFrameDuration(WaveType(MEDIASUBTYPE_PCM, WAVE_FORMAT_PCM)), 0);
}

TEST(MediaTypes, VideoByMajorTypeOrFormat) {
    CMediaType type = DvType();
    EXPECT_TRUE(IsVideo(type));
    type.SetType(&MEDIATYPE_Stream);
    EXPECT_TRUE(IsVideo(type)) << "the format type alone is enough";
    type.SetFormatType(&FORMAT_MPEGVideo);
    EXPECT_FALSE(IsVideo(type));
    type.SetType(&MEDIATYPE_Video);
    EXPECT_TRUE(IsVideo(type));
}

TEST(MediaTypes, FourccOfVideoAndAudio) {
    DWORD fourcc = 0;
    EXPECT_TRUE(GetFourcc(FourccType("YUY2", 8, 8, 16), fourcc));
    EXPECT_EQ(fourcc, MAKEFOURCC('Y', 'U', 'Y', '2'));
    EXPECT_TRUE(GetFourcc(WaveType(MEDIASUBTYPE_PCM, WAVE_FORMAT_PCM), fourcc));
    EXPECT_EQ(fourcc, 1u);
    EXPECT_FALSE(GetFourcc(CMediaType(), fourcc));

    EXPECT_TRUE(IsDV(FourccType("DVSD", 720, 576, 24)));
    EXPECT_FALSE(IsDV(FourccType("DvSd", 720, 576, 24)));
    EXPECT_FALSE(IsDV(VideoType(Fourcc("dvsd"), FORMAT_VideoInfo, PictureHeader(720, 576, 24, BI_RGB))))
        << "the subtype does not count";
}

TEST(MediaTypes, AudioRates) {
    EXPECT_EQ(GetDataRate(WaveType(MEDIASUBTYPE_PCM, WAVE_FORMAT_PCM)), 192000u);
    EXPECT_EQ(GetDataRate(WaveType(MEDIASUBTYPE_PCM, WAVE_FORMAT_MPEG)), 384000u);
    EXPECT_EQ(GetMpegAudioVersion(WaveType(MEDIASUBTYPE_PCM, WAVE_FORMAT_MPEG)), 1);
    EXPECT_EQ(GetMpegAudioVersion(WaveType(kMpeg2Audio, WAVE_FORMAT_MPEG)), 2);
    EXPECT_EQ(GetMpegAudioVersion(WaveType(MEDIASUBTYPE_PCM, WAVE_FORMAT_PCM)), 0);
    EXPECT_EQ(GetMpegAudioVersion(FourccType("dvsd", 720, 576, 24)), 0);
}

TEST(MediaTypes, CodecFamilies) {
    const BITMAPINFOHEADER header = PictureHeader(640, 480, 24, 0);
    const auto made = [&](const GUID& subtype, const GUID& format) {
        return VideoType(subtype, format, header);
    };
    const auto h264 = [](const AM_MEDIA_TYPE& type) { return IsH264(type, false); };
    const auto mpeg4 = [](const AM_MEDIA_TYPE& type) { return IsMpeg4Part2(type, false); };
    const struct {
        const char* name;
        bool (*test)(const AM_MEDIA_TYPE&);
        std::vector<GUID> subtypes;
        bool alsoMpeg4Format;
    } families[] = {
        {"MPEG-4",
         mpeg4,
         {Fourcc("MP4S"),
          Fourcc("MP43"),
          Fourcc("MPG4"),
          Fourcc("MP42"),
          Fourcc("M4S2"),
          Fourcc("MP4V"),
          Fourcc("mp4v"),
          {0xE7D5085C, 0x3752, 0x4E4C, {0x8C, 0xB2, 0xA9, 0x08, 0x6A, 0x4B, 0xD2, 0x73}},
          {0x50AD890E, 0xDC99, 0x4B4C, {0x80, 0x3C, 0x52, 0x54, 0xF5, 0x29, 0x5F, 0x90}}},
         true},
        {"H.264",
         h264,
         {Fourcc("H264"),
          {0xFCA6C675, 0xB44B, 0x420D, {0xAA, 0x88, 0x4B, 0x1F, 0x06, 0x4F, 0x2D, 0x56}},
          {0xD4C7CDA0, 0x73A5, 0x48C0, {0xA0, 0xEC, 0xF0, 0xD7, 0xED, 0x8E, 0x98, 0xE4}},
          {0x22D0BF9C, 0x2B17, 0x4413, {0x8F, 0x95, 0xC0, 0x4E, 0xB3, 0x98, 0x1B, 0x28}},
          {0x10751631, 0xC573, 0x423F, {0x95, 0xC0, 0x43, 0xCF, 0x57, 0x1B, 0x5C, 0x1F}}},
         true},
        {"plain H.264", IsPlainH264, {Fourcc("H264")}, false},
        {"DivX", IsDivX, {Fourcc("DIVX"), Fourcc("DIV3"), Fourcc("DX50")}, true},
        {"Xvid", IsXvid, {Fourcc("XVID")}, false},
        {"SEDG", IsSedg, {Fourcc("SEDG")}, false},
        {"WMV", IsWindowsMediaVideo, {Fourcc("WMV1"), Fourcc("WMV2"), Fourcc("WMV3")}, false},
    };
    for (const auto& family : families) {
        SCOPED_TRACE(family.name);
        for (const GUID& subtype : family.subtypes) {
            EXPECT_TRUE(family.test(made(subtype, FORMAT_VideoInfo)));
            EXPECT_TRUE(family.test(made(subtype, FORMAT_VideoInfo2)));
            EXPECT_EQ(family.test(made(subtype, kMpeg4Video)), family.alsoMpeg4Format);
            EXPECT_FALSE(family.test(made(subtype, FORMAT_None)));
            CMediaType stream = made(subtype, FORMAT_VideoInfo);
            stream.SetType(&MEDIATYPE_Stream);
            EXPECT_FALSE(family.test(stream));
        }
        EXPECT_FALSE(family.test(made(Fourcc("YUY2"), FORMAT_VideoInfo)));
    }
    EXPECT_TRUE(IsH264(made(Fourcc("H264"), FORMAT_None), true));
    EXPECT_TRUE(IsMpeg4Part2(made(Fourcc("MP4V"), GUID_NULL), true));
    EXPECT_FALSE(IsMpeg4Part2(made(Fourcc("MP4V"), FORMAT_WaveFormatEx), true));
}

TEST(MediaTypes, Descriptions) {
    CMediaType stream;
    stream.SetType(&MEDIATYPE_Stream);
    CMediaType named = stream;
    named.SetType(&MEDIATYPE_Video);
    named.SetSubtype(&MEDIASUBTYPE_YUY2);
    const struct {
        CMediaType type;
        const wchar_t* text;
    } cases[] = {
        {RgbType(MEDIASUBTYPE_RGB24, 720, -576, 24), L"Video 720-576-24 tpf: 40 dr: 28800000"},
        {FourccType("YUY2", 720, 576, 16, 333667),
         L"Video 720-576-16 :-< MEDIASUBTYPE_YUY2 tpf: 33 dr: 28800000"},
        {WaveType(MEDIASUBTYPE_PCM, WAVE_FORMAT_PCM), L"Audio 44100-2-16 (1) tpf: 0 dr: 192000"},
        {WaveType(MEDIASUBTYPE_PCM, WAVE_FORMAT_MPEG), L"Audio 44100-2-16 (80) MPEG-1 tpf: 0 dr: 384000"},
        {stream, L"MEDIATYPE_Stream tpf: 0 dr: 0"},
        {named, L"MEDIATYPE_Video / MEDIASUBTYPE_YUY2 tpf: 0 dr: 0"},
    };
    for (const auto& one : cases)
        EXPECT_EQ(Describe(one.type), one.text);
}

} // namespace
