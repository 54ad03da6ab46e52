// Media types whose format blocks hold anything, or less than their type needs.
#include "baseclasses/MediaType.h"
#include "filter/MediaTypes.h"
#include "fuzz/Input.h"

#include <dvdmedia.h>
#include <iterator>
#include <utility>

using namespace scenedetect;
using fuzz::Require;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const GUID majorTypes[] = {MEDIATYPE_Video, MEDIATYPE_Audio, MEDIATYPE_Interleaved, GUID_NULL};
    static const GUID formatTypes[] = {FORMAT_VideoInfo,  FORMAT_VideoInfo2, FORMAT_MPEGVideo,
                                       FORMAT_MPEG2Video, FORMAT_DvInfo,     FORMAT_WaveFormatEx,
                                       GUID_NULL};
    fuzz::Input input(data, size);
    AM_MEDIA_TYPE type{};
    type.majortype = majorTypes[input.Take<std::uint8_t>() % std::size(majorTypes)];
    type.formattype = formatTypes[input.Take<std::uint8_t>() % std::size(formatTypes)];
    type.subtype = input.Take<GUID>();
    std::vector<std::uint8_t> format = input.Repeated(input.Take<std::uint8_t>());
    type.cbFormat = static_cast<ULONG>(format.size());
    type.pbFormat = format.empty() ? nullptr : format.data();

    const BITMAPINFOHEADER* header = GetBitmapHeader(std::as_const(type));
    const std::size_t extent = GetBitmapHeaderExtent(type);
    Require((header != nullptr) == (extent >= sizeof(BITMAPINFOHEADER)));
    if (header) {
        const auto* end = reinterpret_cast<const std::uint8_t*>(header) + extent;
        Require(end == format.data() + format.size());
    }
    (void)GetFrameDuration(type);
    (void)GetFrameDurationOrDefault(type);
    (void)GetDataRate(type);
    DWORD fourcc = 0;
    const bool hasFourcc = GetFourcc(type, fourcc);
    Require(!IsDV(type) || hasFourcc || !IsVideo(type));
    (void)HasWaveFormat(type);
    (void)GetMpegAudioVersion(type);
    for (const bool alsoFormatless : {false, true}) {
        (void)IsMpeg4Part2(type, alsoFormatless);
        (void)IsH264(type, alsoFormatless);
    }
    (void)IsPlainH264(type);
    (void)IsDivX(type);
    (void)IsXvid(type);
    (void)IsSedg(type);
    (void)IsWindowsMediaVideo(type);
    Require(!Describe(type).empty());
    return 0;
}
