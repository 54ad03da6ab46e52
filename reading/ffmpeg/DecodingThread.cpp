#include "reading/ffmpeg/DecodingThread.h"

#include <utility>

namespace scenedetect {

DecodingThread::DecodingThread(DecodePacket decode)
    : m_decode(std::move(decode)), m_thread([this] { Work(); }) {}

DecodingThread::~DecodingThread() {
    {
        const std::lock_guard lock(m_mutex);
        m_isEnding = true;
    }
    m_changed.notify_all();
    m_thread.join();
}

void DecodingThread::Send(FfmpegPtr<AVPacket> packet) {
    {
        const std::lock_guard lock(m_mutex);
        m_packets.push_back(std::move(packet));
    }
    ++m_onTheirWay;
    m_changed.notify_all();
}

Pictures DecodingThread::Receive() {
    std::unique_lock lock(m_mutex);
    m_changed.wait(lock, [this] { return !m_decoded.empty(); });
    Decoded oldest = std::move(m_decoded.front());
    m_decoded.pop_front();
    --m_onTheirWay;
    oldest.error.Rethrow();
    return std::move(oldest.pictures);
}

void DecodingThread::Work() {
    std::unique_lock lock(m_mutex);
    for (;;) {
        m_changed.wait(lock, [this] { return m_isEnding || !m_packets.empty(); });
        if (m_isEnding)
            return;
        const FfmpegPtr<AVPacket> packet = std::move(m_packets.front());
        m_packets.pop_front();
        lock.unlock();
        Decoded decoded;
        decoded.error.Attempt([&] { decoded.pictures = m_decode(packet.get()); });
        lock.lock();
        m_decoded.push_back(std::move(decoded));
        m_changed.notify_all();
    }
}

} // namespace scenedetect
