// Cuts DV while it is read: the frames of each scene, byte for byte, into a file of its own.
#pragma once

#include "products/clips/ClipSettings.h"
#include "products/muxing/Container.h"
#include "reading/dv/TapeJudge.h"
#include "reading/readers/Picture.h"

#include <cstdint>
#include <deque>
#include <map>
#include <memory>
#include <optional>
#include <span>
#include <string>

namespace scenedetect {

/// Holds the last samples until the scenes in them are known, so that their bytes go to the file without a
/// copy; the frames of a scene that is known later are moved from the clip before. All members throw
/// HostError when a clip can't be written; of that clip nothing remains then. One thread at a time.
///
/// In a container a clip has one line system and one audio format: it ends where they change, and goes on in
/// "NAME-2", "NAME-3" and so on.
class ClipCutter {
  public:
    /// So many samples are held; a scene that begins before them costs a copy.
    static constexpr std::size_t kLookBack = 2;

    /// `claims` must outlive the object. Where `keepsAll`, frames of no scene are held in a file without a
    /// name, since a scene that begins with them may still be told.
    ClipCutter(ClipSettings settings, OutputClaims& claims, ClipListener listener, bool keepsAll = false);
    ~ClipCutter();
    ClipCutter(const ClipCutter&) = delete;
    ClipCutter& operator=(const ClipCutter&) = delete;

    /// HostError, before anything is read, where the clips of this input could not be encoded as wanted.
    void RequireEncodable(const std::string& input, bool hasAudio) const;
    /// A scene begins at this sample, counted from 0: one of the clip that is being written, of those held or
    /// of those still to come. Another at the same sample changes nothing. The frame among the names is
    /// filled in.
    void BeginScene(std::int64_t sample, const NameFields& names) { Turn(sample, names); }
    /// From this sample on, one of those that BeginScene takes, there is no scene until the next begins.
    void EndScene(std::int64_t sample) { Turn(sample, std::nullopt); }
    /// The picture of the next sample, a DV frame, whose bytes stay as long as it is shared; the scenes that
    /// were found with it have been announced. At most kLookBack are held when this returns.
    void Add(std::shared_ptr<const Picture> picture);
    /// There are no more samples: the last clip is what was there.
    void Finish();

  private:
    struct OpenClip;
    struct OpenFrame;
    struct Held {
        std::shared_ptr<const Picture> picture;
        std::optional<DvAudioFormat> audio; // that holds there
    };

    void WriteOldest();
    void Turn(std::int64_t sample, std::optional<NameFields> names);
    void BeginClip(std::int64_t frame, std::optional<NameFields> names);
    void NoteAudio(const std::optional<TapeVerdict>& verdict);
    void AppendFrame(const Held& held);
    void SplitClip(std::int64_t sample, std::optional<NameFields> names);
    void FinishClip();
    void Remux(OpenClip& open);
    void RemuxPart(OpenClip& open, std::span<const OpenFrame> frames, std::int64_t end);

    const ClipSettings m_settings;
    const std::optional<Container> m_container; // none: raw
    OutputClaims& m_claims;
    const ClipListener m_listener;
    const bool m_keepsAll;

    // That begin at samples held or to come; none: the last one ends there.
    std::map<std::int64_t, std::optional<NameFields>> m_scenes;
    std::deque<Held> m_held;
    TapeJudge m_judge;         // of audio formats, for a container
    std::int64_t m_oldest = 0; // number of the first sample held
    std::unique_ptr<OpenClip> m_clip;
};

} // namespace scenedetect
