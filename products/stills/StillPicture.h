// A decoded picture as a file of its own: scaled to its shape on the screen, turned upright, and encoded.
#pragma once

#include <cstdint>
#include <vector>

struct AVFrame;

namespace scenedetect {

enum class StillFormat { Png, Jpeg, Bmp };

struct StillShape {
    int width = 0;    ///< of the picture to be made; 0: as wide as the frame is shown
    int quarters = 0; ///< quarter turns clockwise that stand it upright, 0 to 3
    int loss = 2;     ///< of JPEG: from 2, hardly to be told from the source, to 31
};

/// The bytes of a picture file. The height follows from the width and the frame's pixel aspect. HostError
/// when the frame's format cannot be converted.
[[nodiscard]] std::vector<std::uint8_t> EncodeStill(const AVFrame& frame, const StillShape& shape,
                                                    StillFormat format);

} // namespace scenedetect
