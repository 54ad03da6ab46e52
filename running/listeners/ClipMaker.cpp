#include "running/listeners/ClipMaker.h"

#include "reading/base/HostError.h"
#include "running/listeners/SceneNames.h"

#include <algorithm>
#include <memory>

namespace scenedetect {
namespace {

// Holds the sample as long as its picture is shared.
std::shared_ptr<const Picture> Share(PictureSample& sample) {
    sample.AddRef();
    return {&sample.picture, [held = &sample](const Picture*) { held->Release(); }};
}

} // namespace

void ClipMaker::Begin(const RunInfo& info) {
    m_info = info;
    const bool isDv = info.format.fourcc == kDvFourcc;
    // Where a container has the audio beside the frames, its packets are what is to be cut.
    const bool isMute = info.media.audio && !info.hasDvAudio && !info.media.isRawDv;
    const bool needsPackets =
        !isDv || (!info.media.isRawDv && (!m_settings.container.empty() || (isMute && info.input != "-")));
    if (!needsPackets)
        m_cutter
            .emplace(
                m_settings, m_claims, [this](const WrittenClip& clip) { Tell(clip); }, m_dropsShort)
            .RequireEncodable(info.input, info.hasDvAudio);
    else if (info.input == "-")
        throw HostError(
            "standard input: only DV can be cut as it comes; for --split of other video, or into a "
            "container, give a file");
    else
        Plan(info.input);
    if (isDv && isMute && m_settings.container.empty() && !m_settings.encode.IsWanted())
        m_console.Message(info.input + ": its audio is not in the DV frames: clips are " +
                          (m_cutter ? "without" : m_suffix + " files, to keep it"));
    m_cut.path = info.input;
    m_cut.scale = info.scale;
    m_cut.firstPicture = info.firstPlace;
}

void ClipMaker::Plan(const std::string& input) {
    const ClipPlan plan = PlanClips(input, m_settings);
    m_suffix = plan.suffix;
    const std::string prefix = input + ": ";
    for (const std::string& note : plan.notes)
        m_console.Message(prefix + note);
}

void ClipMaker::Scene(const FoundScene& scene) {
    const NameFields names = NamesOf(scene, m_info);
    if (m_cutter)
        return m_cutter->BeginScene(scene.sample, names);
    // Better now than when the whole file is read.
    (void)FindOutputTarget(PathIn(m_settings.folder, m_settings.names.Expand(names, m_suffix)),
                           m_settings.existing);
    m_cut.scenes.push_back({scene.place, names, {}});
}

void ClipMaker::Gap(std::int64_t sample, const FilePlace& place) {
    if (m_cutter)
        m_cutter->EndScene(sample);
    else if (!m_cut.scenes.empty())
        m_cut.scenes.back().end = place.time;
}

void ClipMaker::Passed(PictureSample& sample, std::int64_t /*index*/) {
    if (m_cutter)
        m_cutter->Add(Share(sample));
}

void ClipMaker::End(const RunEnd& end) {
    if (m_cutter)
        m_cutter->Finish();
    else
        CutFile(end);
    m_isDone = true;
}

void ClipMaker::CutFile(const RunEnd& end) {
    m_cut.end = end.place.time;
    m_cut.endsBefore = end.isBeforeFileEnd || end.ending == RunEnding::Stopped;
    // A run that was stopped still gets the clips of what it found; to stop that, too, is what a second
    // signal is for.
    m_progress.wanted = std::ssize(m_cut.scenes);
    m_progress.made = 0;
    m_progress.products = "clips";
    const auto tell = [this](const WrittenClip& clip) {
        ++m_progress.made;
        Tell(clip);
    };
    CutPackets(m_settings, m_cut, m_claims, tell);
    if (m_mostEarly != 0 || m_mostLate != 0)
        m_console.Message(m_info.input +
                          ": edit lists hide what is in a clip beyond its scene: players that " +
                          "ignore them show up to " + FramesText(m_mostEarly) + " before it and " +
                          FramesText(m_mostLate) + " after it");
}

void ClipMaker::ListOutputs(RunOutputs& outputs) const {
    outputs.AddSeries("clip", m_settings.folder, m_written, m_isDone);
}

void ClipMaker::Tell(const WrittenClip& clip) {
    ++m_written;
    if (clip.hidesOthers) {
        m_mostEarly = std::max(m_mostEarly, clip.framesEarly);
        m_mostLate = std::max(m_mostLate, clip.framesLate);
    }
    if (!clip.note.empty())
        m_console.Message(clip.path + ": " + clip.note);
}

} // namespace scenedetect
