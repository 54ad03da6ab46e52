// In place of this room's sources where FFmpeg's libraries are not.
#include "reading/base/HostError.h"
#include "reading/media/OpenPictures.h"
#include "reading/readers/PlainPictures.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace scenedetect {
namespace {

// MOV and MP4, Matroska, MXF: DV in them is not to be read past the index.
bool IsContainer(const std::vector<std::uint8_t>& start) {
    using namespace std::string_view_literals;
    constexpr std::array kBoxes = {"ftyp"sv, "moov"sv, "mdat"sv, "wide"sv, "free"sv, "skip"sv};
    const std::string_view bytes(reinterpret_cast<const char*>(start.data()), start.size());
    return bytes.starts_with("\x1A\x45\xDF\xA3"sv) || bytes.starts_with("\x06\x0E\x2B\x34"sv) ||
           (bytes.size() >= 8 && std::ranges::count(kBoxes, bytes.substr(4, 4)) != 0);
}

} // namespace

std::unique_ptr<PictureReader> OpenPictures(const std::string& path, const Reading& reading,
                                            const DamageLog::Listener& listener) {
    auto stream = std::make_shared<StreamInput>(path, reading.stop);
    const std::string name = stream->Path();
    const auto start = BeginOf(*stream, 8);
    if (start.empty() && !reading.stop)
        throw HostError(name + ": is empty");
    auto pictures = IsContainer(start)
                        ? nullptr
                        : OpenPlainPictures(std::move(stream), DamageLog(reading.console, name, listener),
                                            reading.threads);
    if (!pictures)
        throw HostError(
            name + (reading.stop ? ": stopped before the first picture"
                                 : ": neither raw DV nor an AVI file with DV or uncompressed video, and this "
                                   "build has no decoders; kxscenes on Linux reads it, or convert it: ffmpeg "
                                   "-i IN -c:v rawvideo -pix_fmt yuyv422 OUT.avi, or where it holds DV "
                                   "ffmpeg -i IN -c copy OUT.dv"));
    return pictures;
}

} // namespace scenedetect
