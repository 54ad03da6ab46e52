#include "products/clips/ClipCutter.h"

#include "products/clips/MendedDv.h"
#include "products/files/OutputFile.h"
#include "products/muxing/RemuxDv.h"
#include "reading/base/HostError.h"
#include "reading/base/ListText.h"
#include "reading/dv/PackText.h"

#include <algorithm>
#include <span>
#include <utility>
#include <vector>

namespace scenedetect {
namespace {

std::optional<Container> ContainerOf(const ClipSettings& settings) {
    if (settings.container.empty() && !settings.encode.IsWanted())
        return std::nullopt;
    return ContainerNamed(settings.container.empty() ? "mkv" : settings.container);
}

template <typename Value>
std::string ChangeText(const std::optional<Value>& before, const std::optional<Value>& after) {
    return (before ? TextOf(*before) : "none") + ", then " + (after ? TextOf(*after) : "none");
}

} // namespace

struct ClipCutter::OpenFrame {
    std::int64_t number; // in the source
    std::int64_t offset; // in the clip
    std::optional<DvSystem> system;
    std::optional<DvAudioFormat> audio;
    bool isMended = false;
    bool isSilent = false;
};

// Under a container the file is never committed: its hidden one holds the frames until they are remuxed.
struct ClipCutter::OpenClip {
    OpenClip(const std::string& path, Existing existing) : file(path, existing) {}

    OutputFile file;
    WrittenClip clip;
    std::optional<NameFields> names; // none: frames of no scene, as far as is known
    std::vector<OpenFrame> frames;
};

ClipCutter::ClipCutter(ClipSettings settings, OutputClaims& claims, ClipListener listener, bool keepsAll)
    : m_settings(std::move(settings)),
      m_container(ContainerOf(m_settings)),
      m_claims(claims),
      m_listener(std::move(listener)),
      m_keepsAll(keepsAll) {}

ClipCutter::~ClipCutter() = default;

void ClipCutter::RequireEncodable(const std::string& input, bool hasAudio) const {
    if (m_settings.encode.IsWanted())
        RequireDvEncodable(input, m_settings.encode, *m_container, hasAudio);
}

void ClipCutter::Turn(std::int64_t sample, std::optional<NameFields> names) {
    if (sample < m_oldest)
        SplitClip(sample, std::move(names));
    else
        m_scenes.try_emplace(sample, std::move(names));
}

void ClipCutter::Add(std::shared_ptr<const Picture> picture) {
    if (const DvFrameInfo* info = m_container ? picture->Dv() : nullptr)
        NoteAudio(m_judge.Note(picture->place.frame, *info));
    m_held.push_back({std::move(picture), m_held.empty() ? std::nullopt : m_held.back().audio});
    if (m_held.size() > kLookBack)
        WriteOldest();
}

// The verdict comes when the next picture is there, while the one it is about is still held.
void ClipCutter::NoteAudio(const std::optional<TapeVerdict>& verdict) {
    if (verdict && !m_held.empty())
        m_held.back().audio = verdict->audio;
}

void ClipCutter::Finish() {
    NoteAudio(m_judge.Finish());
    while (!m_held.empty())
        WriteOldest();
    FinishClip();
}

void ClipCutter::WriteOldest() {
    const Held oldest = std::move(m_held.front());
    m_held.pop_front();
    try {
        if (auto scene = m_scenes.extract(m_oldest)) {
            FinishClip();
            if (scene.mapped())
                BeginClip(oldest.picture->place.frame, std::move(scene.mapped()));
        }
        if (!m_clip && m_keepsAll)
            BeginClip(oldest.picture->place.frame, std::nullopt);
        ++m_oldest;
        if (m_clip) // pictures before the first scene are no scene's
            AppendFrame(oldest);
    } catch (...) {
        m_clip.reset();
        m_held.clear();
        throw;
    }
}

void ClipCutter::BeginClip(std::int64_t frame, std::optional<NameFields> names) {
    if (names)
        names->frame = frame;
    const std::string path =
        names ? ClaimClipPath(m_settings, *names, m_container ? m_container->suffix : ".dv", m_claims)
              : m_settings.folder + "/.kxscenes"; // that it never gets
    m_clip = std::make_unique<OpenClip>(path, names ? m_settings.existing : Existing::Replace);
    m_clip->clip.path = path;
    m_clip->clip.firstFrame = frame;
    m_clip->names = std::move(names);
}

// The last frames of the clip are a scene of their own, or no scene's.
void ClipCutter::SplitClip(std::int64_t sample, std::optional<NameFields> names) {
    const auto frames = m_oldest - sample;
    if (!m_clip || frames > std::ssize(m_clip->frames))
        throw HostError("a scene at picture " + std::to_string(sample) + " was found too late to be cut");
    const auto first = m_clip->frames.end() - frames;
    if (first == m_clip->frames.begin() && m_clip->names)
        return;
    std::unique_ptr<OpenClip> before = std::move(m_clip);
    BeginClip(first->number, std::move(names));
    m_clip->frames.assign(first, before->frames.end());
    const std::int64_t offset = first->offset;
    for (OpenFrame& frame : m_clip->frames)
        frame.offset -= offset;
    before->file.MoveTail(offset, m_clip->file);
    before->frames.erase(first, before->frames.end());
    std::unique_ptr<OpenClip> next = std::exchange(m_clip, std::move(before));
    FinishClip();
    m_clip = std::move(next);
}

void ClipCutter::AppendFrame(const Held& held) {
    const std::span<const std::uint8_t> bytes = held.picture->Bytes();
    const auto system = DvSystemOfSize(bytes.size());
    OpenFrame frame{held.picture->place.frame, m_clip->file.Size(), system, held.audio};
    const auto mended = m_container && system ? Mend(bytes, *system, held.audio) : std::nullopt;
    m_clip->file.Write(mended ? mended->bytes : bytes);
    frame.isSilent = mended && mended->isSilent;
    frame.isMended = mended && !mended->isSilent;
    m_clip->frames.push_back(frame);
}

void ClipCutter::FinishClip() {
    if (!m_clip)
        return;
    const std::unique_ptr<OpenClip> open = std::move(m_clip);
    if (!open->names)
        return;
    if (m_container)
        return Remux(*open);
    open->clip.bytes = open->file.Size();
    open->clip.frames = std::ssize(open->frames);
    open->file.Commit();
    m_listener(open->clip);
}

void ClipCutter::Remux(OpenClip& open) {
    open.file.Flush();
    WrittenClip& clip = open.clip;
    std::span<const OpenFrame> left = open.frames;
    for (int part = 2;; ++part) {
        const auto end = std::ranges::find_if_not(left, [&left](const OpenFrame& frame) {
            return frame.system == left.front().system && frame.audio == left.front().audio;
        });
        const auto frames = left.first(static_cast<std::size_t>(end - left.begin()));
        left = left.subspan(frames.size());
        RemuxPart(open, frames, left.empty() ? open.file.Size() : left.front().offset);
        if (left.empty())
            return;
        const OpenFrame& before = frames.back();
        const OpenFrame& next = left.front();
        open.names->frame = clip.firstFrame = next.number;
        clip.note = "goes on from " + NameOfOutput(clip.path) + " with another " +
                    (before.system != next.system ? "line system: " + ChangeText(before.system, next.system)
                                                  : "audio format: " + ChangeText(before.audio, next.audio));
        clip.path = ClaimClipPath(m_settings, *open.names, '-' + std::to_string(part) + m_container->suffix,
                                  m_claims);
    }
}

void ClipCutter::RemuxPart(OpenClip& open, std::span<const OpenFrame> frames, std::int64_t end) {
    WrittenClip& clip = open.clip;
    OutputFile target(clip.path, m_settings.existing);
    const FilePart part{frames.front().offset, end};
    const RemuxedDv remuxed =
        m_settings.encode.IsWanted()
            ? EncodeDv(open.file.WritingPath(), part, *m_container, m_settings.encode, target)
            : RemuxDv(open.file.WritingPath(), part, *m_container, target);
    target.Commit();
    const auto note = [&clip](const char* before, std::int64_t count, const char* after) {
        if (count != 0)
            AppendToList(clip.note, "; ", before + FramesText(count) + after);
    };
    clip.frames = remuxed.frames;
    clip.bytes = remuxed.bytes;
    note("lacks ", std::ssize(frames) - remuxed.frames, " that FFmpeg's libraries cannot read");
    note("the headers of ", std::ranges::count(frames, true, &OpenFrame::isMended), " are mended");
    note("the audio of ", std::ranges::count(frames, true, &OpenFrame::isSilent), " cannot be read: silence");
    m_listener(clip);
}

} // namespace scenedetect
