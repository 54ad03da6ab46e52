#include "products/cutting/ClipCutter.h"

#include "products/cutting/RemuxDv.h"
#include "products/files/OutputFile.h"
#include "reading/base/HostError.h"

#include <span>
#include <utility>

namespace scenedetect {
namespace {

std::optional<Container> ContainerOf(const ClipSettings& settings) {
    return settings.container.empty() ? std::nullopt : std::optional(ContainerNamed(settings.container));
}

} // namespace

// Under a container the file is never committed: its hidden one holds the frames until they are remuxed.
struct ClipCutter::OpenClip {
    OpenClip(const std::string& path, Existing existing) : file(path, existing) {}

    OutputFile file;
    WrittenClip clip;
    std::uint32_t frameBytes = 0;
    std::int64_t mended = 0; // frames
};

ClipCutter::ClipCutter(ClipSettings settings, OutputClaims& claims, ClipListener listener)
    : m_settings(std::move(settings)),
      m_container(ContainerOf(m_settings)),
      m_claims(claims),
      m_listener(std::move(listener)) {}

ClipCutter::~ClipCutter() = default;

void ClipCutter::BeginScene(std::int64_t sample, const NameFields& names) {
    if (sample < m_oldest)
        throw HostError("a scene at picture " + std::to_string(sample) + " was found too late to be cut");
    m_scenes.try_emplace(sample, names);
}

void ClipCutter::Add(std::shared_ptr<const Picture> picture) {
    m_held.push_back(std::move(picture));
    if (m_held.size() > kLookBack)
        WriteOldest();
}

void ClipCutter::Finish() {
    while (!m_held.empty())
        WriteOldest();
    FinishClip();
}

void ClipCutter::WriteOldest() {
    const std::shared_ptr<const Picture> picture = std::move(m_held.front());
    m_held.pop_front();
    try {
        if (auto scene = m_scenes.extract(m_oldest)) {
            FinishClip();
            BeginClip(*picture, std::move(scene.mapped()));
        }
        ++m_oldest;
        if (m_clip) // pictures before the first scene are no scene's
            AppendFrame(*picture);
    } catch (...) {
        m_clip.reset();
        m_held.clear();
        throw;
    }
}

void ClipCutter::BeginClip(const Picture& first, NameFields names) {
    names.frame = first.place.frame;
    const std::string path =
        ClaimClipPath(m_settings, names, m_container ? m_container->suffix : ".dv", m_claims);
    m_clip = std::make_unique<OpenClip>(path, m_settings.existing);
    m_clip->clip.path = path;
    m_clip->clip.firstFrame = first.place.frame;
    m_clip->frameBytes = first.format.imageBytes;
}

void ClipCutter::AppendFrame(const Picture& picture) {
    if (m_container && picture.format.imageBytes != m_clip->frameBytes)
        throw HostError(
            m_clip->clip.path + ": frame " + std::to_string(picture.place.frame) +
            " has another line system, and a container holds one only; without --container the clip "
            "holds both");
    std::span<const std::uint8_t> bytes = picture.Bytes();
    if (const auto header = m_container ? MendedHeader(bytes) : std::nullopt) {
        m_clip->file.Write(*header);
        bytes = bytes.subspan(header->size());
        ++m_clip->mended;
    }
    m_clip->file.Write(bytes);
    ++m_clip->clip.frames;
}

void ClipCutter::FinishClip() {
    if (!m_clip)
        return;
    const std::unique_ptr<OpenClip> open = std::move(m_clip);
    WrittenClip& clip = open->clip;
    clip.bytes = open->file.Size();
    if (m_container) {
        open->file.Flush();
        OutputFile target(clip.path, m_settings.existing);
        const RemuxedDv remuxed = RemuxDv(open->file.WritingPath(), *m_container, target);
        target.Commit();
        if (const std::int64_t lost = clip.frames - remuxed.frames; lost != 0)
            clip.note = "lacks " + FramesText(lost) + " that FFmpeg's libraries cannot read";
        else if (open->mended != 0)
            clip.note = "the headers of " + FramesText(open->mended) + " are mended";
        clip.frames = remuxed.frames;
        clip.bytes = remuxed.bytes;
    } else {
        open->file.Commit();
    }
    if (m_listener)
        m_listener(clip);
}

} // namespace scenedetect
