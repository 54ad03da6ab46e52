// The C interface with any structures: whatever they say, only the bytes of frames are read, and misuse gives
// errors.
#include "fuzz/Input.h"
#include "library/kxscenes.h"

#include <limits>

using scenedetect::fuzz::Input;
using scenedetect::fuzz::Require;

namespace {

constexpr std::int64_t kMostBytes = 1 << 18;

/// Bytes that a picture may have at the most in any format, gaps included; nothing when no memory has that
/// many.
std::int64_t ExtentOf(const kxscenes_frame& frame) {
    if (frame.format == KXSCENES_DV)
        return frame.dv_size;
    const std::int64_t rowBytes = std::int64_t{frame.width} * 4;
    if (frame.stride == std::numeric_limits<std::int64_t>::min() || frame.height < 1)
        return 0;
    const std::int64_t stride = frame.stride < 0 ? -frame.stride : frame.stride;
    return stride > kMostBytes ? kMostBytes + 1 : stride * (frame.height - 1) + rowBytes;
}

void Push(kxscenes_detector* detector, Input& input) {
    kxscenes_frame frame{};
    frame.struct_size = input.Take<std::uint8_t>() == 1 ? 0 : sizeof frame;
    frame.format = input.Take<std::int8_t>();
    frame.width = input.Take<std::int16_t>();
    frame.height = input.Take<std::int16_t>();
    frame.shift = input.Take<std::int8_t>();
    frame.dv_size = input.Take<std::int32_t>();
    frame.stride = input.Take<std::int64_t>();
    frame.time = input.Take<std::int64_t>();
    const std::int64_t extent = ExtentOf(frame);
    if (extent > kMostBytes)
        return;
    const std::vector<std::uint8_t> bytes = input.Repeated(extent < 1 ? 1 : static_cast<std::size_t>(extent));
    const bool isUp = frame.format != KXSCENES_DV && frame.stride < 0 && extent > 0;
    frame.data = &bytes[isUp ? static_cast<std::size_t>(-frame.stride * (frame.height - 1)) : 0];
    Require(kxscenes_push(detector, &frame) <= KXSCENES_OK);
}

void TakeAll(kxscenes_detector* detector) {
    std::int32_t frames = 0;
    Require(kxscenes_frame_count(detector, &frames) == KXSCENES_OK);
    kxscenes_scene scene{};
    scene.struct_size = sizeof scene;
    while (kxscenes_take_scene(detector, &scene) == KXSCENES_OK)
        Require(scene.frame >= 0 && scene.frame < frames);
    kxscenes_figures figures{};
    figures.struct_size = sizeof figures;
    std::int32_t taken = 0;
    while (kxscenes_take_figures(detector, &figures, 1, &taken) == KXSCENES_OK)
        Require(figures.frame < frames && figures.difference <= 255 && figures.level <= 255);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Input input(data, size);
    kxscenes_settings settings{};
    settings.struct_size = sizeof settings;
    Require(kxscenes_default_settings(&settings) == KXSCENES_OK);
    settings.method = input.Take<std::int8_t>();
    settings.interval = input.Take<std::int32_t>();
    settings.rate_numerator = input.Take<std::int32_t>();
    settings.rate_denominator = input.Take<std::int32_t>();
    settings.keep_figures = 1;
    kxscenes_detector* detector = nullptr;
    if (kxscenes_create(&settings, &detector) != KXSCENES_OK)
        return 0;
    while (!input.IsEmpty()) {
        switch (input.Take<std::uint8_t>() % 8) {
        case 0:
            Require(kxscenes_restart(detector) == KXSCENES_OK);
            break;
        case 1:
            Require(kxscenes_end(detector) == KXSCENES_OK);
            break;
        case 2:
            Require(kxscenes_mark(detector) <= KXSCENES_OK);
            break;
        case 3:
            TakeAll(detector);
            break;
        default:
            Push(detector, input);
        }
    }
    TakeAll(detector);
    kxscenes_destroy(detector);
    return 0;
}
