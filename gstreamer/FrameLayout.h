// How the detection library reads the buffers of a stream: their format, and where the luma lies.
#pragma once

#include "library/kxscenes.h"

#include <gst/video/video.h>

#include <cstdint>
#include <optional>

namespace scenedetect {

/// The frames of one stream, as caps tell them.
struct FrameLayout {
    GstVideoFormat video = GST_VIDEO_FORMAT_UNKNOWN; ///< that for DV
    std::int32_t width = 0;                          ///< in pixels; 0 when caps of DV don't tell it
    std::int32_t height = 0;
    std::int32_t format = KXSCENES_DV; ///< how the library reads it
    std::int32_t shift = 0;            ///< see kxscenes_frame
    gsize rowBytes = 0;                ///< of the plane that is read, without padding
    gsize offset = 0;                  ///< of the first row, for buffers without a GstVideoMeta
    gint stride = 0;                   ///< likewise

    /// Whether both belong to one run.
    [[nodiscard]] bool IsLike(const FrameLayout& other) const {
        return video == other.video && width == other.width && height == other.height;
    }
};

/// Everything that can be watched; owned by the caller.
[[nodiscard]] GstCaps* WatchableCaps();

/// Nothing for caps that are not fixed or can't be watched.
[[nodiscard]] std::optional<FrameLayout> LayoutOf(const GstCaps* caps);

/// A buffer mapped for reading, while this lives; the buffer stays as it is.
class MappedFrame {
  public:
    MappedFrame(const FrameLayout& layout, GstBuffer* buffer);
    ~MappedFrame();
    MappedFrame(const MappedFrame&) = delete;
    MappedFrame& operator=(const MappedFrame&) = delete;

    /// Null when the buffer can't be mapped, or when rows are missing. Without a time.
    [[nodiscard]] kxscenes_frame* Frame() { return m_frame.data ? &m_frame : nullptr; }

  private:
    void MapDv();
    void MapPicture(const FrameLayout& layout);

    GstBuffer* m_buffer;
    GstMapInfo m_map{};
    bool m_isMapped = false;
    kxscenes_frame m_frame{};
};

} // namespace scenedetect
