// Decoded pictures laid out as YUY2, of which only the luma is meant.
#pragma once

extern "C" {
#include <libavutil/frame.h>
}

#include <cstdint>
#include <memory>

struct SwsContext;

namespace scenedetect {

/// Lays out pictures of one target size. Luma is taken over bit for bit from every YUV and grey format (the
/// upper 8 bits of deeper ones); RGB and other formats are converted, pictures of another size scaled.
/// One thread at a time.
class LumaLayout {
  public:
    /// The size of the first picture decides: its width is cropped to a multiple of 8 where it has 8 columns,
    /// and to an even one below.
    explicit LumaLayout(const AVFrame& first);
    ~LumaLayout();

    [[nodiscard]] int Width() const { return m_width; }
    [[nodiscard]] int Height() const { return m_height; }
    [[nodiscard]] std::size_t Bytes() const;

    /// Fills `yuy2` (Bytes() of them). False when the format can't be converted.
    [[nodiscard]] bool LayOut(const AVFrame& picture, std::uint8_t* yuy2);

  private:
    [[nodiscard]] bool Convert(const AVFrame& picture, std::uint8_t* yuy2);

    const int m_sourceWidth;
    const int m_width;
    const int m_height;
    SwsContext* m_converter = nullptr;
};

} // namespace scenedetect
