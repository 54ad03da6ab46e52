#include "reading/media/SkipAhead.h"

#include "reading/ffmpeg/Stamps.h"
#include "reading/media/PictureCount.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace scenedetect {
namespace {

// The packets that decoding may have to begin with.
class HeldPackets {
  public:
    void Add(FfmpegPtr<AVPacket> packet) {
        m_bytes += packet->size;
        m_packets.push_back(std::move(packet));
    }
    // Decoding will begin at the key frame before the last one that is not after this stamp: pictures of a
    // key frame that is none in truth, and such as take a while to be whole, are whole by the next.
    void BeginFor(std::int64_t stamp) {
        int keys = 0;
        for (std::size_t i = m_packets.size(); i-- != 0;)
            if ((m_packets[i]->flags & AV_PKT_FLAG_KEY) != 0 && m_packets[i]->pts <= stamp && ++keys == 2)
                return DropBefore(i);
    }
    [[nodiscard]] bool AreTooMany() const { return m_bytes > kMostBytes; }
    // Whether they begin where the file does.
    [[nodiscard]] bool AreAll() const { return m_dropped == 0; }
    // Of the pictures to come before `end`, in their order.
    [[nodiscard]] std::vector<std::int64_t> StampsBefore(std::int64_t end) const {
        std::vector<std::int64_t> stamps;
        for (const auto& packet : m_packets)
            if (packet->pts >= m_packets.front()->pts && packet->pts < end &&
                (packet->flags & AV_PKT_FLAG_DISCARD) == 0)
                stamps.push_back(packet->pts);
        std::ranges::sort(stamps);
        return stamps;
    }
    [[nodiscard]] std::int64_t FirstStamp() const { return m_packets.front()->pts; }
    [[nodiscard]] PacketQueue Take() { return std::move(m_packets); }

  private:
    static constexpr std::int64_t kMostBytes = std::int64_t{1} << 28;

    void DropBefore(std::size_t index) {
        for (; index != 0; --index, ++m_dropped) {
            m_bytes -= m_packets.front()->size;
            m_packets.pop_front();
        }
    }

    PacketQueue m_packets;
    std::int64_t m_bytes = 0;
    std::int64_t m_dropped = 0;
};

struct Counted {
    std::optional<std::int64_t> wanted; // stamp of the first wanted picture
    std::int64_t count = 0;             // of those before it
};

struct Check {
    bool isOver = false;
    bool hasFailed = false;
};

// Reads the packets up to those of the first picture that is wanted, or all.
std::optional<Counted> Count(MediaInput& input, std::int64_t stamp, const PictureReader::IsWanted& isWanted,
                             FrameClock& clock, HeldPackets& held) {
    PictureCount pictures(input.Video().codecpar->codec_id);
    Counted counted;
    bool isStampThere = false;
    for (bool isThere = true; isThere && !counted.wanted;) {
        auto packet = OwnFfmpeg(av_packet_alloc());
        isThere = input.ReadPacket(*packet);
        if (!isThere)
            pictures.End();
        else if (!pictures.Add(*packet))
            return std::nullopt;
        else
            held.Add(std::move(packet));
        for (auto told = pictures.Next(); told && !counted.wanted; told = pictures.Next()) {
            isStampThere = isStampThere || told->stamp == stamp;
            if (told->stamp <= stamp) // was handed out, or could not be decoded
                continue;
            if (!isStampThere)
                return std::nullopt;
            FrameClock next = clock;
            held.BeginFor(told->stamp);
            if (isWanted(next.Next(told->stamp, told->byteOffset))) {
                counted.wanted = told->stamp;
            } else {
                clock = next;
                ++counted.count;
            }
        }
        if (held.AreTooMany())
            return std::nullopt;
    }
    const bool isWhole = !input.File().IsStopped() && input.BreakOffReason().empty();
    return isWhole ? std::optional(counted) : std::nullopt;
}

} // namespace

std::optional<SkippedStream> SkipAhead(std::unique_ptr<MediaInput> input, const FrameClock& clock,
                                       std::int64_t stamp, const PictureReader::IsWanted& isWanted,
                                       const Decoding& decoding, const VideoDecoder::Damaged& damaged) {
    if (!PictureCount::IsPossible(input->Video().codecpar->codec_id))
        return std::nullopt;
    SkippedStream skipped{nullptr, OwnFfmpeg(av_frame_alloc()), clock, 0};
    HeldPackets held;
    const auto counted = Count(*input, stamp, isWanted, skipped.clock, held);
    if (!counted || held.AreAll())
        return std::nullopt;
    skipped.count = counted->count;
    const std::int64_t begin = held.FirstStamp();
    std::vector<std::int64_t> stamps = held.StampsBefore(counted->wanted.value_or(kFarthestStamp));
    if (counted->wanted)
        stamps.push_back(*counted->wanted);
    const auto check = std::make_shared<Check>();
    skipped.stream = std::make_unique<DecodedStream>(std::move(input), held.Take(), decoding, [=] {
        if (check->isOver)
            damaged();
        else
            check->hasFailed = true;
    });
    // The decoder has to agree about each of them.
    const auto next = [&] { return skipped.stream->Next(*skipped.picture) && !check->hasFailed; };
    for (const std::int64_t expected : stamps) {
        bool isThere = next();
        while (isThere &&
               skipped.picture->best_effort_timestamp < begin) // needs what is before the key frame
            isThere = next();
        if (!isThere || skipped.picture->best_effort_timestamp != expected)
            return std::nullopt;
    }
    if (!counted->wanted) {
        if (next())
            return std::nullopt;
        skipped.picture.reset();
    }
    check->isOver = true;
    return skipped;
}

} // namespace scenedetect
