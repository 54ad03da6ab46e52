// In place of this room's sources where FFmpeg's libraries are not.
#include "reading/base/HostError.h"
#include "reading/media/OpenPictures.h"
#include "reading/readers/PlainPictures.h"

namespace scenedetect {

std::unique_ptr<PictureReader> OpenPictures(const std::string& path, const Reading& reading,
                                            const DamageLog::Listener& listener) {
    auto stream = std::make_shared<StreamInput>(path, reading.stop);
    const std::string name = stream->Path();
    if (BeginOf(*stream, 1).empty() && !reading.stop)
        throw HostError(name + ": is empty");
    auto pictures =
        OpenPlainPictures(std::move(stream), DamageLog(reading.console, name, listener), reading.threads);
    if (!pictures)
        throw HostError(
            name + (reading.stop ? ": stopped before the first picture"
                                 : ": neither raw DV nor an AVI file with DV or uncompressed video, and this "
                                   "build has no decoders; kxscenes on Linux reads it, or convert it: ffmpeg "
                                   "-i IN -c:v rawvideo -pix_fmt yuyv422 OUT.avi"));
    return pictures;
}

} // namespace scenedetect
