#include "reading/dv/PackText.h"

#include <array>
#include <cstdio>

namespace scenedetect {
namespace {

template <typename... Numbers>
std::string Format(const char* format, Numbers... numbers) {
    std::array<char, 64> text{};
    std::snprintf(text.data(), text.size(), format, numbers...);
    return text.data();
}

template <typename Value>
std::string TextOrNone(const std::optional<Value>& value) {
    return value ? TextOf(*value) : "";
}

} // namespace

std::string TextOf(const DvTimecode& timecode) {
    return Format("%02d:%02d:%02d%c%02d", timecode.hours, timecode.minutes, timecode.seconds,
                  timecode.isDropFrame ? ';' : ':', timecode.frames);
}

std::string TextOf(const std::chrono::year_month_day& date) {
    return Format("%04d-%02u-%02u", static_cast<int>(date.year()), static_cast<unsigned>(date.month()),
                  static_cast<unsigned>(date.day()));
}

std::string TextOf(std::chrono::seconds time) {
    const auto seconds = static_cast<int>(time.count());
    return Format("%02d:%02d:%02d", seconds / 3600, seconds / 60 % 60, seconds % 60);
}

std::string TextOf(DvAspect aspect) {
    constexpr std::array kTexts = {
        "4:3", "14:9", "16:9", "14:9 letterbox", "16:9 letterbox", "letterbox wider than 16:9"};
    return kTexts[static_cast<std::size_t>(aspect)];
}

std::string TextOf(const DvAudioFormat& format) {
    return Format("%d Hz %d bits %d channels", format.samplingRate, format.bits, format.channels);
}

std::string TextOf(DvSystem system) {
    return std::to_string(DvLines(system));
}

TapeTexts TextsOf(const DvPacks& packs) {
    return {TextOrNone(packs.date), TextOrNone(packs.time), TextOrNone(packs.timecode),
            TextOrNone(packs.aspect), TextOrNone(packs.audio)};
}

} // namespace scenedetect
