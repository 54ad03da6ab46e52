// Time stamps of containers: whatever they say, pictures are numbered and timed onward, and packets of the
// video get a DTS that is in range.
#include "fuzz/Input.h"
#include "products/muxing/PacketStamps.h"
#include "reading/ffmpeg/FfmpegPointers.h"
#include "reading/ffmpeg/Stamps.h"
#include "reading/media/FrameClock.h"

#include <array>
#include <memory>

using namespace scenedetect;
using fuzz::Input;
using fuzz::Require;

namespace {

// Any positive fraction, and often one that files have.
AVRational TakeRational(Input& input) {
    constexpr AVRational kUsual[] = {{25, 1}, {30000, 1001}, {1, 90000}, {1, 1000}, {1, 25}, {1, 48000}};
    const auto choice = input.Take<std::uint8_t>();
    if (choice < std::size(kUsual))
        return kUsual[choice];
    const auto positive = [&input] { return static_cast<int>(input.Take<std::uint32_t>() >> 1 | 1); };
    const int num = positive();
    return {num, positive()};
}

// A few steps from the last one, a jump, anything, or none.
std::int64_t TakeStamp(Input& input, std::int64_t& last) {
    switch (input.Take<std::uint8_t>() % 4) {
    case 0:
        last += input.Take<std::int8_t>();
        return last;
    case 1:
        last += input.Take<std::int32_t>();
        return last;
    case 2:
        return input.Take<std::int64_t>();
    default:
        return AV_NOPTS_VALUE;
    }
}

void NumberPictures(Input input) {
    FrameClock::Setup setup;
    setup.timeBase = TakeRational(input);
    setup.rate = TakeRational(input);
    const auto flags = input.Take<std::uint8_t>();
    setup.constantRate = (flags & 1) != 0;
    setup.stampsMayJump = (flags & 2) != 0;
    if ((flags & 4) != 0)
        setup.origin = 0;
    FrameClock clock(setup);
    FilePlace last{-1, -1};
    for (std::int64_t stamp = 0; !input.IsEmpty();) {
        const FilePlace place = clock.Next(TakeStamp(input, stamp), -1);
        Require(place.frame > last.frame && place.time > last.time);
        Require(place.stamp == kNoStamp || !IsWild(place.stamp));
        last = place;
    }
}

void CorrectPackets(Input input) {
    struct Closer {
        void operator()(AVFormatContext* context) const { avformat_free_context(context); }
    };
    const std::unique_ptr<AVFormatContext, Closer> context(avformat_alloc_context());
    std::array<AVStream*, 2> streams{};
    for (AVStream*& stream : streams) {
        stream = avformat_new_stream(context.get(), nullptr);
        stream->time_base = TakeRational(input);
    }
    const AVRational rate = TakeRational(input);
    const auto flags = input.Take<std::uint8_t>();
    streams[0]->codecpar->video_delay = flags >> 4;
    PacketStamps stamps(streams, rate, (flags & 1) != 0);
    const auto packet = OwnFfmpeg(av_packet_alloc());
    for (std::array<std::int64_t, 2> last{}; !input.IsEmpty();) {
        const int stream = input.Take<std::uint8_t>() & 1;
        auto& lastOfStream = last[static_cast<std::size_t>(stream)];
        packet->dts = TakeStamp(input, lastOfStream);
        packet->pts = TakeStamp(input, lastOfStream);
        packet->duration = input.Take<std::uint8_t>() < 250 ? 1 : input.Take<std::int64_t>();
        stamps.Correct(*packet, stream);
        Require(stream != 0 || packet->dts != AV_NOPTS_VALUE);
        for (const std::int64_t each : {packet->dts, packet->pts})
            Require(each == AV_NOPTS_VALUE || !IsWild(each / 4));
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    NumberPictures({data, size});
    CorrectPackets({data, size});
    return 0;
}
