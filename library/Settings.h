// The settings of the C interface: their defaults and ranges.
#pragma once

#include "engine/decision/DetectionParameters.h"
#include "library/kxscenes.h"

#include <cstdint>

[[nodiscard]] kxscenes_settings DefaultSettings();

/// KXSCENES_OK or KXSCENES_ERROR_VALUE.
[[nodiscard]] std::int32_t CheckSettings(const kxscenes_settings& settings);

/// Those of the picture comparison.
[[nodiscard]] scenedetect::DetectionParameters ParametersOf(const kxscenes_settings& settings);
