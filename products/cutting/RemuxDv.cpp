#include "products/cutting/RemuxDv.h"

#include "products/cutting/ClipMuxer.h"
#include "products/cutting/PacketSource.h"
#include "reading/ffmpeg/FfmpegPointers.h"

namespace scenedetect {

RemuxedDv RemuxDv(const std::string& raw, const FilePart& part, const Container& container,
                  OutputFile& target) {
    PacketSource source(raw, part);
    ClipMuxer muxer(target, container, source, source.Timecode());
    const auto packet = OwnFfmpeg(av_packet_alloc());
    RemuxedDv result;
    for (int stream = 0; (stream = source.Read(*packet)) != -1;) {
        result.frames += stream == 0 ? 1 : 0;
        muxer.Write(*packet, stream);
    }
    muxer.Finish();
    result.bytes = muxer.Size();
    return result;
}

} // namespace scenedetect
