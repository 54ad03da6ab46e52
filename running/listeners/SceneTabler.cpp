#include "running/listeners/SceneTabler.h"

#include "products/files/NamePattern.h"
#include "products/files/OutputFile.h"
#include "reading/base/FirstError.h"

#include <utility>

namespace scenedetect {

void SceneTabler::Begin(const RunInfo& info) {
    m_table.input = info.input;
    m_table.name = NameOfInput(info.input);
    m_table.scale = info.scale;
    m_table.width = info.media.width;
    m_table.height = info.media.height;
    m_table.pixelAspect = info.media.pixelAspect;
    m_table.quarterTurns = info.media.quarterTurns;
    m_table.delay = info.media.delay;
    m_table.audio = info.media.audio;
    m_table.startTimecode = info.media.startTimecode;
}

void SceneTabler::Scene(const FoundScene& scene) {
    if (!m_table.scenes.empty())
        m_table.scenes.back().end = scene.place;
    // Two methods' marks at one place are one scene here.
    if (!m_table.scenes.empty() && m_table.scenes.back().sample == scene.sample)
        return;
    m_table.scenes.push_back({scene.place, scene.place, scene.method, scene.sample});
}

void SceneTabler::End(const RunEnd& end) {
    if (!m_table.scenes.empty())
        m_table.scenes.back().end = end.place;
    m_table.frameCount = end.place.frame;
    m_table.partial = end.ending == RunEnding::BrokeOff  ? "input breaks off"
                      : end.ending == RunEnding::Stopped ? "stopped"
                                                         : "";
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
