// A media file opened with FFmpeg's libraries: its video stream and the packets of that.
#pragma once

#include "hosts/kxscenes/FrameClock.h"
#include "hosts/shared/ByteInput.h"

extern "C" {
#include <libavformat/avformat.h>
}

#include <atomic>
#include <cstdint>
#include <span>
#include <string>

namespace scenedetect {

/// One thread at a time; `stop`, which must outlive the object, may be set by any and ends a blocking read.
class MediaInput final : public ByteInput {
  public:
    /// Opens the file; HostError when it is not one that can be read.
    MediaInput(std::string path, const std::atomic<bool>& stop);
    ~MediaInput() override;
    MediaInput(const MediaInput&) = delete;
    MediaInput& operator=(const MediaInput&) = delete;

    [[nodiscard]] const std::string& Path() const override { return m_path; }
    [[nodiscard]] std::int64_t Size() const override { return m_size; }
    [[nodiscard]] std::int64_t Position() const override;
    [[nodiscard]] bool IsStopped() const override { return m_stop; }

    /// Whether it is a raw DV stream, to be read as bytes.
    [[nodiscard]] bool IsRawDv() const;
    // From the file's start on the first call.
    [[nodiscard]] std::size_t Read(std::span<std::uint8_t> target) override;
    void Skip(std::int64_t bytes) override;

    // --- for anything but raw DV ---
    /// Finds the video stream; HostError when there is none. To be called before what follows.
    void FindVideo();
    [[nodiscard]] AVStream& Video() const { return *m_video; }
    [[nodiscard]] bool IsAvi() const;
    /// How the stream's time stamps are to be read.
    [[nodiscard]] FrameClock::Setup ClockSetup() const;
    /// The next packet of the video stream, owned by the caller; empty ones are left out. False at the end,
    /// also where the file breaks off (then BreakOffReason says why) or `stop` is set. HostError when reading
    /// fails.
    [[nodiscard]] bool ReadPacket(AVPacket& packet);
    [[nodiscard]] const std::string& BreakOffReason() const { return m_breakOffReason; }

  private:
    [[noreturn]] void Fail(int code) const;
    void GoToStart();
    [[nodiscard]] bool IsEndMissing() const;

    const std::string m_path;
    const std::atomic<bool>& m_stop;
    AVFormatContext* m_context = nullptr;
    AVStream* m_video = nullptr;
    std::int64_t m_size = 0;
    bool m_isAtStart = true;
    std::int64_t m_lastStamp = AV_NOPTS_VALUE;
    std::string m_breakOffReason;
};

} // namespace scenedetect
