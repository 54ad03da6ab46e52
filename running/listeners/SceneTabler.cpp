#include "running/listeners/SceneTabler.h"

#include "products/files/NamePattern.h"
#include "products/files/OutputFile.h"
#include "products/outputs/MergeScenes.h"
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
    m_table.scenes = MergeShortScenes(m_table.scenes, m_shortest);
    FirstError error;
    for (const TableUse& use : m_uses)
        error.Attempt([&] { use(m_table); });
    error.Rethrow();
}

TableUse WriteTableTo(std::string path, const OutputFormat& format) {
    return [path = std::move(path), &format](const SceneTable& table) {
        OutputFile file(path, Existing::Replace);
        file.Write(format.write(table));
        file.Commit();
    };
}

} // namespace scenedetect
