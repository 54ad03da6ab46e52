#include "running/listeners/SceneTabler.h"

#include "products/files/NamePattern.h"
#include "products/files/OutputFile.h"
#include "reading/base/FirstError.h"
#include "reading/base/HostError.h"

#include <algorithm>
#include <utility>

namespace scenedetect {

SceneTable TableOf(const RunInfo& info) {
    SceneTable table;
    table.input = info.input;
    table.name = NameOfInput(info.input);
    table.scale = info.scale;
    table.width = info.media.width;
    table.height = info.media.height;
    table.pixelAspect = info.media.pixelAspect;
    table.quarterTurns = info.media.quarterTurns;
    table.delay = info.media.delay;
    table.audio = info.media.audio;
    table.startTimecode = info.media.startTimecode;
    return table;
}

void AddScene(SceneTable& table, const FoundScene& scene) {
    EndScene(table, scene.place);
    // Two methods' marks at one place are one scene here.
    if (!table.scenes.empty() && table.scenes.back().sample == scene.sample)
        return;
    table.scenes.push_back(
        {scene.place, scene.place, scene.method, scene.sample, TextsOf(scene.tape), scene.name});
}

void EndScene(SceneTable& table, const FilePlace& place) {
    if (!table.scenes.empty() && table.scenes.back().FrameCount() == 0)
        table.scenes.back().end = place;
}

void EndTable(SceneTable& table, const RunEnd& end) {
    EndScene(table, end.place);
    table.frameCount = end.place.frame;
    table.partial = end.ending == RunEnding::BrokeOff  ? "input breaks off"
                    : end.ending == RunEnding::Stopped ? "stopped"
                                                       : "";
}

void SceneTabler::Begin(const RunInfo& info) {
    m_table = TableOf(info);
    const auto use = std::ranges::find(m_uses, true, &TableUse::needsRecorded);
    if (use == m_uses.end())
        return;
    if (info.format.fourcc != kDvFourcc)
        throw HostError(use->path + ": subtitles of recording times (srt) need DV video of 25 Mbit/s");
    m_recorded.emplace(info.scale);
}

void SceneTabler::Passed(PictureSample& sample, std::int64_t /*index*/) {
    if (m_recorded)
        m_recorded->Note(sample.picture);
}

void SceneTabler::End(const RunEnd& end) {
    EndTable(m_table, end);
    if (m_recorded)
        m_table.recorded = m_recorded->Finish();
    FirstError error;
    for (TableUse& use : m_uses)
        error.Attempt([&] {
            FirstError lack;
            WriteFile(use.path, Existing::Replace, use.make(m_table, lack));
            use.isWritten = true;
            lack.Rethrow();
        });
    error.Rethrow();
}

void SceneTabler::ListOutputs(RunOutputs& outputs) const {
    for (const TableUse& use : m_uses)
        outputs.Add(NameOfOutput(use.path), use.isWritten);
}

} // namespace scenedetect
