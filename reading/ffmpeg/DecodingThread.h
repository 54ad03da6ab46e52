// Decoding of the next packets while the pictures of the last one are looked at.
#pragma once

#include "reading/base/FirstError.h"
#include "reading/ffmpeg/FfmpegPointers.h"

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>

namespace scenedetect {

/// What comes out for a packet, in order; null for what can't be decoded.
using Pictures = std::deque<FfmpegPtr<AVFrame>>;
/// Null stands for the end of the stream.
using DecodePacket = std::function<Pictures(const AVPacket*)>;

/// A thread that decodes packets in the order in which they are sent. With several on their way it seldom
/// has to be woken, which takes longer than much of what is done with a picture. Used by one thread.
class DecodingThread {
  public:
    /// `decode` is called by the new thread only. std::system_error when it cannot be started.
    explicit DecodingThread(DecodePacket decode);
    /// Packets on their way are left.
    ~DecodingThread();
    DecodingThread(const DecodingThread&) = delete;
    DecodingThread& operator=(const DecodingThread&) = delete;

    void Send(FfmpegPtr<AVPacket> packet);
    /// The pictures of the oldest packet on its way, of which there is one; waits for them, and throws what
    /// decoding them threw.
    [[nodiscard]] Pictures Receive();
    /// Packets that were sent, and whose pictures were not received.
    [[nodiscard]] std::size_t OnTheirWay() const { return m_onTheirWay; }

  private:
    struct Decoded {
        Pictures pictures;
        FirstError error;
    };
    void Work();

    const DecodePacket m_decode;
    std::size_t m_onTheirWay = 0;
    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::deque<FfmpegPtr<AVPacket>> m_packets;
    std::deque<Decoded> m_decoded;
    bool m_isEnding = false;
    std::thread m_thread;
};

} // namespace scenedetect
