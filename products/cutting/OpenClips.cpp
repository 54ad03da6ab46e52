#include "products/cutting/OpenClips.h"

#include "products/muxing/VideoEncoder.h"

#include <utility>

namespace scenedetect {

PacketClip& OpenClips::Open(std::size_t scene, WrittenClip clip, const ClipSpan& span,
                            std::int64_t firstFrame, std::unique_ptr<VideoEncoder> encoder) {
    const PacketCut::Scene& cut = m_job.cut.scenes[scene];
    clip.firstFrame = cut.place.frame;
    clip.hidesOthers = HasEdits(m_job.container);
    clip.path = ClaimClipPath(m_job.settings, cut.names, m_job.container.suffix, m_job.claims);
    m_clips.push_back(std::make_unique<PacketClip>(clip, m_job.settings.existing, m_job.container,
                                                   m_job.source, span, m_job.source.TimecodeAt(firstFrame),
                                                   std::move(encoder)));
    return *m_clips.back();
}

void OpenClips::Offer(const AVPacket& packet, int stream) {
    for (const auto& clip : m_clips)
        clip->Offer(packet, stream);
}

void OpenClips::OfferPicture(const AVFrame& picture, std::int64_t time) {
    for (const auto& clip : m_clips)
        clip->OfferPicture(picture, time);
}

void OpenClips::FinishComplete(std::int64_t now) {
    std::erase_if(m_clips, [&](const std::unique_ptr<PacketClip>& clip) {
        if (!clip->IsComplete(now))
            return false;
        m_job.listener(clip->Finish());
        return true;
    });
}

void OpenClips::FinishAll() {
    for (const auto& clip : m_clips)
        m_job.listener(clip->Finish());
}

} // namespace scenedetect
