#include "products/stills/FrameFetcher.h"

#include "reading/base/HostError.h"
#include "reading/dv/DvCheck.h"
#include "reading/ffmpeg/VideoDecoder.h"
#include "reading/media/MediaInput.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <fstream>
#include <optional>
#include <utility>

namespace scenedetect {
namespace {

class RawDvFetcher final : public FrameFetcher {
  public:
    explicit RawDvFetcher(const std::string& path) : m_file(path, std::ios::binary) {
        const AVCodec* codec = avcodec_find_decoder(AV_CODEC_ID_DVVIDEO);
        m_decoder = OwnFfmpeg(avcodec_alloc_context3(codec));
        if (!m_file || !codec || avcodec_open2(m_decoder.get(), codec, nullptr) < 0)
            throw HostError(path + ": cannot be read again for its pictures");
    }

    const AVFrame* Fetch(const FilePlace& place) override {
        const auto packet = OwnFfmpeg(av_packet_alloc());
        if (av_new_packet(packet.get(), kDifFrameBytes625) < 0)
            return nullptr;
        const std::size_t count = Read(place.byteOffset, packet->data, kDifFrameBytes625);
        const auto system = VoteDvSystem({packet->data, count});
        if (!system || count < DvFrameBytes(*system))
            return nullptr;
        packet->size = static_cast<int>(DvFrameBytes(*system));
        const bool isDecoded = avcodec_send_packet(m_decoder.get(), packet.get()) >= 0 &&
                               avcodec_receive_frame(m_decoder.get(), m_frame.get()) >= 0;
        return isDecoded ? m_frame.get() : nullptr;
    }

  private:
    std::size_t Read(std::int64_t offset, std::uint8_t* target, std::size_t bytes) {
        m_file.clear();
        m_file.seekg(offset);
        m_file.read(reinterpret_cast<char*>(target), static_cast<std::streamsize>(bytes));
        return static_cast<std::size_t>(m_file.gcount());
    }

    std::ifstream m_file;
    FfmpegPtr<AVCodecContext> m_decoder;
    const FfmpegPtr<AVFrame> m_frame = OwnFfmpeg(av_frame_alloc());
};

// Where streams may have been joined a stamp may come twice, and it is the byte offset that tells the
// pictures apart and where to look for them.
class StampFetcher final : public FrameFetcher {
  public:
    explicit StampFetcher(std::string path) : m_path(std::move(path)) { OpenAtStart(); }

    int QuarterTurns() const override { return m_input->QuarterTurns(); }

    const AVFrame* Fetch(const FilePlace& place) override {
        if (place.stamp == kNoStamp)
            return nullptr;
        if (!IsShortlyBefore(place) || !DecodeUpTo(place))
            if (!SeekAndDecode(place))
                return nullptr;
        m_frame->sample_aspect_ratio = m_input->PixelAspect(*m_frame);
        return m_frame.get();
    }

  private:
    void OpenAtStart() {
        m_decoder.reset();
        m_input.emplace(m_path);
        m_input->FindVideo();
        // What can't be decoded costs its own picture only.
        m_decoder.emplace(m_input->File(), Decoding{},
                          [this](AVPacket& packet) { return m_input->ReadPacket(packet); });
        m_stamps.emplace(TimeBase(), m_input->ClockSetup().rate);
        // A bare stream has no stamps and can only be read from the beginning.
        m_hasStamps = !DecodeNext() || m_frame->best_effort_timestamp != AV_NOPTS_VALUE;
    }

    [[nodiscard]] AVRational TimeBase() const { return m_input->Video().time_base; }
    [[nodiscard]] bool GoesByBytes(const FilePlace& place) const {
        return m_input->File().StampsMayJump() && place.byteOffset >= 0;
    }
    [[nodiscard]] std::int64_t BytesUntil(const FilePlace& place) const {
        return place.byteOffset - m_frame->pkt_pos;
    }

    [[nodiscard]] bool IsShortlyBefore(const FilePlace& place) const {
        constexpr int kSeconds = 4; // nearer than that, a key frame hardly saves anything
        if (!m_isDecoded)
            return false;
        if (GoesByBytes(place))
            return BytesUntil(place) >= 0 && BytesUntil(place) < kSearchedBytes[0];
        return place.stamp >= m_stamp &&
               (!m_hasStamps || av_rescale_q(place.stamp - m_stamp, TimeBase(), {1, 1}) < kSeconds);
    }

    [[nodiscard]] bool IsAt(const FilePlace& place) const {
        // Reading that begins elsewhere may give a picture another of the packets that it is in.
        constexpr std::int64_t kTolerance = 1 << 16;
        return m_stamp == place.stamp &&
               (!GoesByBytes(place) || m_frame->pkt_pos < 0 || std::abs(BytesUntil(place)) <= kTolerance);
    }
    [[nodiscard]] bool IsAfter(const FilePlace& place) const {
        // Pictures come in another order than they lie in the file.
        return GoesByBytes(place) ? BytesUntil(place) < -kSearchedBytes[0] : m_stamp >= place.stamp;
    }

    // A key frame may be announced too late, or its first pictures need frames before it.
    bool SeekAndDecode(const FilePlace& place) {
        if (!m_hasStamps) {
            OpenAtStart();
            return DecodeUpTo(place);
        }
        const auto tryFrom = [&](bool isFound) {
            if (!isFound)
                return false;
            m_decoder->Flush();
            m_stamps->Forget();
            m_isDecoded = false;
            return DecodeUpTo(place);
        };
        if (GoesByBytes(place))
            return std::ranges::any_of(kSearchedBytes, [&](std::int64_t back) {
                return tryFrom(m_input->SeekToByte(std::max<std::int64_t>(0, place.byteOffset - back)));
            });
        return std::ranges::any_of(kSearchedSeconds, [&](int seconds) {
            return tryFrom(m_input->SeekBefore(place.stamp - av_rescale_q(seconds, {1, 1}, TimeBase())));
        });
    }

    // False when that picture does not come: one after it, or the end.
    bool DecodeUpTo(const FilePlace& place) {
        while (!m_isDecoded || !IsAt(place)) {
            if ((m_isDecoded && IsAfter(place)) || !DecodeNext())
                return false;
        }
        return true;
    }

    bool DecodeNext() {
        m_isDecoded = false;
        while (!m_isDecoded && m_decoder->Next(*m_frame)) {
            m_stamp = m_stamps->Next(m_frame->best_effort_timestamp);
            m_isDecoded = m_stamp != kNoStamp;
        }
        return m_isDecoded;
    }

    // How far before a picture reading begins, until that is far enough.
    static constexpr std::array kSearchedSeconds = {0, 1, 10, 60};
    static constexpr std::array<std::int64_t, 3> kSearchedBytes = {1 << 20, 1 << 23, 1 << 26};

    const std::string m_path;
    std::optional<MediaInput> m_input;
    std::optional<VideoDecoder> m_decoder;
    std::optional<StampFiller> m_stamps;
    const FfmpegPtr<AVFrame> m_frame = OwnFfmpeg(av_frame_alloc());
    bool m_isDecoded = false; // m_frame is there
    bool m_hasStamps = true;
    std::int64_t m_stamp = 0; // of m_frame
};

} // namespace

std::unique_ptr<FrameFetcher> FrameFetcher::Open(const std::string& path, bool isRawDv) {
    if (isRawDv)
        return std::make_unique<RawDvFetcher>(path);
    return std::make_unique<StampFetcher>(path);
}

} // namespace scenedetect
