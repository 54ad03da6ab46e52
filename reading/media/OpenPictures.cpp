#include "reading/media/OpenPictures.h"

#include "reading/base/HostError.h"
#include "reading/dv/DvCheck.h"
#include "reading/ffmpeg/FfmpegPointers.h"
#include "reading/media/DecodedReader.h"
#include "reading/media/MediaInput.h"
#include "reading/media/PacketFormat.h"
#include "reading/media/PacketReader.h"
#include "reading/readers/DamageLog.h"
#include "reading/readers/PictureReader.h"
#include "reading/readers/PlainPictures.h"
#include "reading/readers/StreamInput.h"

#include <span>
#include <string_view>
#include <utility>
#include <vector>

namespace scenedetect {

namespace {

// Whether it is of another kind beyond doubt, so that DV frames in it are not to be read past its index.
bool IsContainer(std::vector<std::uint8_t> start) {
    const auto bytes = static_cast<int>(start.size());
    start.resize(start.size() + AVPROBE_PADDING_SIZE);
    const AVProbeData data{"", start.data(), bytes, nullptr};
    int score = 0;
    const AVInputFormat* format = av_probe_input_format3(&data, 1, &score);
    return format && score > AVPROBE_SCORE_EXTENSION && format->name != std::string_view("dv");
}

std::unique_ptr<MediaInput> OpenMedia(const std::string& path, std::shared_ptr<StreamInput> stream,
                                      const std::atomic<bool>& stop) {
    const bool isNamedFile = stream->IsFile() && stream->Path() == path;
    auto input = isNamedFile ? std::make_unique<MediaInput>(path, &stop)
                             : std::make_unique<MediaInput>(std::move(stream), stop);
    if (!input->IsRawDv())
        input->FindVideo();
    return input;
}

// Files of some containers can't be read from their beginning to their end.
std::string AdviceFor(const MediaInput& input) {
    if (input.IsSeekable() || input.File().IsStopped())
        return "";
    return std::string(
               "; the index of this file lies after its pictures, and a pipe cannot be read backward: "
               "give the file by its name") +
           (input.File().IsFormat("mp4") ? ", or move the index to its front: ffmpeg -i IN -c copy -movflags "
                                           "+faststart OUT"
                                         : "");
}

std::unique_ptr<PictureReader> OpenPackets(std::unique_ptr<MediaInput> input, const DamageLog& damage,
                                           const Decoding& decoding) {
    const auto first = OwnFfmpeg(av_packet_alloc());
    if (!input->ReadPacket(*first))
        throw HostError(input->Path() + ": no picture can be read" + AdviceFor(*input));

    const AVCodecParameters& stream = *input->Video().codecpar;
    FrameClock::Setup setup = input->ClockSetup();
    const bool isAvi = input->File().IsFormat("avi");
    if (isAvi)
        setup.origin = 0; // an index counts the frames that were dropped at the beginning, too
    if (stream.codec_id == AV_CODEC_ID_DVVIDEO) {
        const std::span<const std::uint8_t> frame(first->data, static_cast<std::size_t>(first->size));
        const auto system = IdentifyDvFrame(frame);
        if (system) {
            setup.rate = RationalOf(SettleDvRate(RatioOf(setup.rate), *system));
            setup.constantRate = true;
            return std::make_unique<PacketReader>(std::move(input), *first, DvPictureFormat(frame, *system),
                                                  setup, damage);
        }
    }
    if (const auto format = UncompressedFormat(stream, RatioOf(setup.rate)); format && isAvi)
        return std::make_unique<PacketReader>(std::move(input), *first, *format, setup, damage);
    return std::make_unique<DecodedReader>(std::move(input), *first, damage, decoding);
}

} // namespace

std::unique_ptr<PictureReader> OpenPictures(const std::string& path, const Reading& reading,
                                            const DamageLog::Listener& listener) {
    const std::atomic<bool>& stop = reading.stop;
    auto stream = std::make_shared<StreamInput>(path, stop);
    const DamageLog damage(reading.console, stream->Path(), listener);
    const auto readRaw = [&] { return OpenRawDv(stream, damage, reading.threads); };
    const auto start = BeginOf(*stream, kDifFrameBytes625);
    if (start.empty() && !stop)
        throw HostError(stream->Path() + ": is empty");
    if (BeginsAsRawDv(start))
        return readRaw();
    const bool isDv = IsDvFrameStart(start);
    std::unique_ptr<MediaInput> input;
    try {
        input = OpenMedia(path, stream, stop);
    } catch (const HostError&) {
        stream->Rewind();
        const auto more = BeginOf(*stream, kUnknownDvBytes + kDifFrameBytes625);
        if (isDv || stop || IsContainer(more) || !HoldsRawDv(more))
            throw;
        return readRaw();
    }
    if (input->IsRawDv() && !isDv)
        return readRaw();
    if (input->IsRawDv())
        input->FindVideo();
    stream->Settle();
    input->TellPackets(reading.part);
    return OpenPackets(std::move(input), damage, {reading.threads, reading.decodesFast});
}

} // namespace scenedetect
