// Where decoded pictures have their luma, as the picture comparison reads it.
#pragma once

#include "engine/Luminance.h"
#include "reading/readers/Picture.h"

extern "C" {
#include <libavutil/frame.h>
}

struct SwsContext;

namespace scenedetect {

struct PictureSize {
    int width = 0;
    int height = 0;
};

/// Holds pictures of one size by the rows of their luma, which are the decoder's own for every YUV and grey
/// format (the upper 8 bits of deeper ones); RGB and other formats are converted, pictures of another size
/// scaled. One thread at a time.
class LumaLayout {
  public:
    /// The size of the first picture decides: its width is cropped to a multiple of 8 where it has 8 columns,
    /// and to an even one below. Where the decoder has halved its sides `halvings` times, that is the size
    /// before, which `announced` tells if it fits.
    explicit LumaLayout(const AVFrame& first, int halvings = 0, PictureSize announced = {});
    ~LumaLayout();

    [[nodiscard]] int Width() const { return m_width; }
    [[nodiscard]] int Height() const { return m_height; }

    /// Moves `decoded` into `picture`, or what is converted of it. False when the format can't be converted.
    [[nodiscard]] bool Hold(AVFrame& decoded, Picture& picture);

  private:
    [[nodiscard]] bool HoldConverted(const AVFrame& decoded, Picture& picture);

    const int m_halvings;
    const PictureSize m_first;
    const int m_width;
    const int m_height;
    SwsContext* m_converter = nullptr;
};

} // namespace scenedetect
