#include "products/cutting/ClipCutter.h"

#include "products/cutting/RemuxDv.h"
#include "products/files/OutputFile.h"
#include "reading/base/HostError.h"

#include <algorithm>
#include <span>
#include <utility>
#include <vector>

namespace scenedetect {
namespace {

std::optional<Container> ContainerOf(const ClipSettings& settings) {
    return settings.container.empty() ? std::nullopt : std::optional(ContainerNamed(settings.container));
}

} // namespace

// Under a container the file is never committed: its hidden one holds the frames until they are remuxed.
struct ClipCutter::OpenClip {
    OpenClip(const std::string& path, Existing existing) : file(path, existing) {}

    struct Frame {
        std::int64_t number; // in the source
        std::int64_t offset; // in the clip
        std::uint32_t bytes;
        bool isMended;
    };

    OutputFile file;
    WrittenClip clip;
    std::vector<Frame> frames;
};

ClipCutter::ClipCutter(ClipSettings settings, OutputClaims& claims, ClipListener listener)
    : m_settings(std::move(settings)),
      m_container(ContainerOf(m_settings)),
      m_claims(claims),
      m_listener(std::move(listener)) {}

ClipCutter::~ClipCutter() = default;

void ClipCutter::BeginScene(std::int64_t sample, const NameFields& names) {
    if (sample < m_oldest)
        SplitClip(sample, names);
    else
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
            BeginClip(picture->place.frame, std::move(scene.mapped()));
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

void ClipCutter::BeginClip(std::int64_t frame, NameFields names) {
    names.frame = frame;
    const std::string path =
        ClaimClipPath(m_settings, names, m_container ? m_container->suffix : ".dv", m_claims);
    m_clip = std::make_unique<OpenClip>(path, m_settings.existing);
    m_clip->clip.path = path;
    m_clip->clip.firstFrame = frame;
}

// The last frames of the clip are a scene of their own.
void ClipCutter::SplitClip(std::int64_t sample, const NameFields& names) {
    const auto frames = m_oldest - sample;
    if (!m_clip || frames > std::ssize(m_clip->frames))
        throw HostError("a scene at picture " + std::to_string(sample) + " was found too late to be cut");
    const auto first = m_clip->frames.end() - frames;
    if (first == m_clip->frames.begin())
        return;
    std::unique_ptr<OpenClip> before = std::move(m_clip);
    BeginClip(first->number, names);
    m_clip->frames.assign(first, before->frames.end());
    const std::int64_t offset = first->offset;
    for (OpenClip::Frame& frame : m_clip->frames)
        frame.offset -= offset;
    before->file.MoveTail(offset, m_clip->file);
    before->frames.erase(first, before->frames.end());
    std::unique_ptr<OpenClip> next = std::exchange(m_clip, std::move(before));
    FinishClip();
    m_clip = std::move(next);
}

void ClipCutter::AppendFrame(const Picture& picture) {
    OpenClip::Frame frame{picture.place.frame, m_clip->file.Size(), picture.format.imageBytes, false};
    std::span<const std::uint8_t> bytes = picture.Bytes();
    if (const auto header = m_container ? MendedHeader(bytes) : std::nullopt) {
        m_clip->file.Write(*header);
        bytes = bytes.subspan(header->size());
        frame.isMended = true;
    }
    m_clip->file.Write(bytes);
    m_clip->frames.push_back(frame);
}

void ClipCutter::RequireOneSystem(const OpenClip& open) {
    for (const OpenClip::Frame& frame : open.frames)
        if (frame.bytes != open.frames.front().bytes)
            throw HostError(
                open.clip.path + ": frame " + std::to_string(frame.number) +
                " has another line system, and a container holds one only; without --container the "
                "clip holds both");
}

void ClipCutter::FinishClip() {
    if (!m_clip)
        return;
    const std::unique_ptr<OpenClip> open = std::move(m_clip);
    WrittenClip& clip = open->clip;
    clip.bytes = open->file.Size();
    clip.frames = std::ssize(open->frames);
    if (m_container) {
        RequireOneSystem(*open);
        open->file.Flush();
        OutputFile target(clip.path, m_settings.existing);
        const RemuxedDv remuxed = RemuxDv(open->file.WritingPath(), *m_container, target);
        target.Commit();
        if (const std::int64_t lost = clip.frames - remuxed.frames; lost != 0)
            clip.note = "lacks " + FramesText(lost) + " that FFmpeg's libraries cannot read";
        else if (const auto mended = std::ranges::count(open->frames, true, &OpenClip::Frame::isMended))
            clip.note = "the headers of " + FramesText(mended) + " are mended";
        clip.frames = remuxed.frames;
        clip.bytes = remuxed.bytes;
    } else {
        open->file.Commit();
    }
    if (m_listener)
        m_listener(clip);
}

} // namespace scenedetect
