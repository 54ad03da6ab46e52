#include "products/cutting/RemuxDv.h"

#include "products/cutting/ClipMuxer.h"
#include "products/cutting/PacketSource.h"
#include "reading/ffmpeg/FfmpegPointers.h"

#include <algorithm>

namespace scenedetect {

std::optional<std::array<std::uint8_t, kDifBlockBytes>> MendedHeader(std::span<const std::uint8_t> frame) {
    constexpr std::array<std::uint8_t, kDifIdBytes> kId = {0x1F, 0x07, 0x00};
    constexpr std::uint8_t kSequenceBits = 0xF0; // of the ID's second byte
    const int sequences = static_cast<int>(frame.size() / kDifSequenceBytes);
    const auto isValid = [&](std::span<const std::uint8_t> block, int sequence) {
        return block[0] == kId[0] && block[1] == (kId[1] | (sequence << 4 & kSequenceBits)) &&
               block[2] == kId[2] && AnnouncedDifSequences(block) == sequences;
    };
    if (isValid(frame, 0))
        return std::nullopt;
    for (int sequence = 1; sequence < sequences; ++sequence) {
        const auto block =
            frame.subspan(static_cast<std::size_t>(sequence) * kDifSequenceBytes, kDifBlockBytes);
        if (!isValid(block, sequence))
            continue;
        std::array<std::uint8_t, kDifBlockBytes> mended;
        std::ranges::copy(block, mended.begin());
        std::ranges::copy(kId, mended.begin());
        return mended;
    }
    return std::nullopt;
}

RemuxedDv RemuxDv(const std::string& raw, const Container& container, OutputFile& target) {
    PacketSource source(raw, "dv");
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
