#include "filter/MediaTypes.h"

#include "baseclasses/GuidNames.h"

#include <mmreg.h>

#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <string_view>

namespace scenedetect {

namespace {

constexpr REFERENCE_TIME kUnitsPerMillisecond = 10000;

std::wstring NameOf(const GUID& id) {
    const std::string_view name = GuidNames[id];
    return {name.begin(), name.end()};
}

std::wstring Joined(std::initializer_list<long long> numbers) {
    std::wstring text;
    for (const long long number : numbers)
        text += (text.empty() ? L"" : L"-") + std::to_wstring(number);
    return text;
}

std::wstring DescribeVideo(const AM_MEDIA_TYPE& type, const BITMAPINFOHEADER& header) {
    const long long height = std::llabs(static_cast<long long>(header.biHeight));
    std::wstring text = L"Video " + Joined({header.biWidth, height, header.biBitCount});
    if (type.subtype != MEDIASUBTYPE_RGB24)
        text += L" :-< " + NameOf(type.subtype);
    return text;
}

std::wstring DescribeAudio(const AM_MEDIA_TYPE& type) {
    WAVEFORMATEX wave{};
    std::memcpy(&wave, type.pbFormat, offsetof(WAVEFORMATEX, cbSize));
    std::wstring text = L"Audio " + Joined({wave.nSamplesPerSec, wave.nChannels, wave.wBitsPerSample}) +
                        L" (" + std::to_wstring(wave.wFormatTag) + L")";
    if (const int version = GetMpegAudioVersion(type))
        text += L" MPEG-" + std::to_wstring(version);
    return text;
}

std::wstring DescribeOther(const AM_MEDIA_TYPE& type) {
    std::wstring text = NameOf(type.majortype);
    if (type.subtype != GUID_NULL)
        text += L" / " + NameOf(type.subtype);
    return text;
}

} // namespace

std::wstring Describe(const AM_MEDIA_TYPE& type) {
    std::wstring text;
    if (const BITMAPINFOHEADER* header = GetBitmapHeader(type))
        text = DescribeVideo(type, *header);
    else if (HasWaveFormat(type))
        text = DescribeAudio(type);
    else
        text = DescribeOther(type);
    text += L" tpf: " + std::to_wstring(GetFrameDuration(type) / kUnitsPerMillisecond);
    text += L" dr: " + std::to_wstring(GetDataRate(type));
    return text;
}

} // namespace scenedetect
