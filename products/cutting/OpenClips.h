// The clips of one pass over a file that are open at a time: audio comes later than its pictures, and scenes
// between two key frames share packets.
#pragma once

#include "products/cutting/CutPackets.h"
#include "products/cutting/PacketClip.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

namespace scenedetect {

/// What a pass over a file's packets works with; all of it outlives the pass.
struct CutJob {
    const ClipSettings& settings;
    const PacketCut& cut;
    PacketSource& source;
    const Container& container;
    OutputClaims& claims;
    const ClipListener& listener; ///< told of each clip that is whole
};

/// One thread at a time; HostError as PacketClip's.
class OpenClips {
  public:
    explicit OpenClips(const CutJob& job) : m_job(job) {}

    [[nodiscard]] bool IsEmpty() const { return m_clips.empty(); }
    /// The clip of a scene: `clip` has what PacketClip wants but the path and the first frame. `firstFrame`
    /// is that of the file, by which its timecode goes.
    PacketClip& Open(std::size_t scene, WrittenClip clip, const ClipSpan& span, std::int64_t firstFrame,
                     std::unique_ptr<VideoEncoder> encoder = nullptr);
    void Offer(const AVPacket& packet, int stream);
    void OfferPicture(const AVFrame& picture, std::int64_t time);
    /// Finishes those that nothing to come belongs to; `now` as PacketClip has it.
    void FinishComplete(std::int64_t now);
    void FinishAll();

  private:
    const CutJob m_job;
    std::vector<std::unique_ptr<PacketClip>> m_clips;
};

} // namespace scenedetect
