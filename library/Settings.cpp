#include "library/Settings.h"

#include <algorithm>

kxscenes_settings DefaultSettings() {
    const scenedetect::DetectionParameters parameters;
    return {.struct_size = sizeof(kxscenes_settings),
            .method = KXSCENES_VIDEO,
            .interval = 0,
            .rate_numerator = 0,
            .rate_denominator = 0,
            .read_timecode = 1,
            .keep_figures = 0,
            .cut_threshold = parameters.cutThreshold,
            .dark_level = parameters.darkLevel,
            .clamp = parameters.diffClamp,
            .votes = parameters.minVotes,
            .longest_scene = 0,
            .area_left = parameters.areaLeft,
            .area_top = parameters.areaTop,
            .area_width = parameters.areaWidth,
            .area_height = parameters.areaHeight};
}

scenedetect::DetectionParameters ParametersOf(const kxscenes_settings& settings) {
    return {settings.cut_threshold, settings.dark_level,    settings.clamp,
            settings.votes,         settings.longest_scene, settings.area_left,
            settings.area_top,      settings.area_width,    settings.area_height};
}

std::int32_t CheckSettings(const kxscenes_settings& settings) {
    const bool isMethod = settings.method >= KXSCENES_TIMESTAMP && settings.method <= KXSCENES_MANUAL;
    const bool isRate = settings.rate_numerator > 0 && settings.rate_denominator > 0;
    const bool isNoRate = settings.rate_numerator == 0 && settings.rate_denominator == 0;
    const auto parameters = ParametersOf(settings);
    const bool areInRange = std::ranges::all_of(scenedetect::kDetectionParameters, [&](const auto& range) {
        return range.Allows(parameters.*range.value);
    });
    return isMethod && settings.interval >= 0 && (isRate || isNoRate) && areInRange ? KXSCENES_OK
                                                                                    : KXSCENES_ERROR_VALUE;
}
