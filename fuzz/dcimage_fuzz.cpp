// The DC picture of DV frames of any length and content, in every mode.
#include "engine/DvDcImage.h"
#include "fuzz/Input.h"

#include <numeric>

using namespace scenedetect;
using fuzz::Require;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const DvDcImage maker;
    constexpr std::size_t kLengthUnit = 4;
    fuzz::Input input(data, size);
    const int mode = input.Take<std::int8_t>();
    const bool isPal = (input.Take<std::uint8_t>() & 1) != 0;
    const int variant = input.Take<std::int8_t>();
    const std::size_t length = input.Take<std::uint16_t>() * kLengthUnit;
    const std::vector<std::uint8_t> frame = input.Repeated(length);

    const auto picture = maker.Create(mode, isPal, variant, frame);
    if (!picture)
        return 0;
    Require(picture->width > 0 && picture->height > 0);
    if (!picture->pixels)
        return 0;
    Require(mode == 2);
    const auto pixels = static_cast<std::size_t>(picture->width) * static_cast<std::size_t>(picture->height);
    [[maybe_unused]] volatile int touched = std::accumulate(picture->pixels, picture->pixels + pixels, 0);
    return 0;
}
