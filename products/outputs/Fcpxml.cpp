#include "products/outputs/NameText.h"
#include "products/outputs/SceneTable.h"
#include "products/outputs/SceneWriters.h"
#include "products/outputs/XmlText.h"

namespace scenedetect {
namespace {

constexpr const char* kFormatId = "r1";
constexpr const char* kAssetId = "r2";

// Whole seconds ("5s"), or a fraction that keeps the rate's own denominator, as readers expect
// ("1001/30000s").
std::string Seconds(std::int64_t frames, Ratio rate) {
    const std::int64_t num = frames * rate.den;
    if (num % rate.num == 0)
        return std::to_string(num / rate.num) + 's';
    return std::to_string(num) + '/' + std::to_string(rate.num) + 's';
}

void Set(pugi::xml_node node, const char* name, const std::string& value) {
    node.append_attribute(name) = value.c_str();
}

void AppendResources(pugi::xml_node root, const SceneTable& table) {
    const Ratio rate = table.scale.rate;
    pugi::xml_node resources = root.append_child("resources");
    pugi::xml_node format = resources.append_child("format");
    Set(format, "id", kFormatId);
    Set(format, "frameDuration", Seconds(1, rate));
    Set(format, "width", std::to_string(table.width));
    Set(format, "height", std::to_string(table.height));
    if (table.pixelAspect.num != table.pixelAspect.den) {
        Set(format, "paspH", std::to_string(table.pixelAspect.num));
        Set(format, "paspV", std::to_string(table.pixelAspect.den));
    }
    pugi::xml_node asset = resources.append_child("asset");
    Set(asset, "id", kAssetId);
    Set(asset, "name", PlainName(table.name));
    Set(asset, "src", MediaUrl(table.input));
    Set(asset, "start", Seconds(SourceStart(table), rate));
    Set(asset, "duration", Seconds(EditFrameCount(table), rate));
    Set(asset, "hasVideo", "1");
    Set(asset, "format", kFormatId);
    if (table.audio) {
        Set(asset, "hasAudio", "1");
        Set(asset, "audioSources", "1");
        Set(asset, "audioChannels", std::to_string(table.audio->channels));
        Set(asset, "audioRate", std::to_string(table.audio->sampleRate));
    }
}

// Returns how many frames the clips last together.
std::int64_t AppendClips(pugi::xml_node spine, const SceneTable& table) {
    const Ratio rate = table.scale.rate;
    std::int64_t offset = 0;
    for (const EditSpan& span : EditSpans(table)) {
        pugi::xml_node clip = spine.append_child("asset-clip");
        Set(clip, "ref", kAssetId);
        Set(clip, "name", ClipName(table, span.scene));
        Set(clip, "offset", Seconds(offset, rate));
        Set(clip, "start", Seconds(span.start, rate));
        Set(clip, "duration", Seconds(span.frameCount, rate));
        Set(clip, "tcFormat", SourceNumbering(table).IsDropFrame() ? "DF" : "NDF");
        offset += span.frameCount;
    }
    return offset;
}

} // namespace

std::string Fcpxml(const SceneTable& table) {
    RequireMediaUrl(table, "FCPXML");
    const std::string name = PlainName(table.name);
    pugi::xml_document document = NewXml("fcpxml");
    pugi::xml_node root = document.append_child("fcpxml");
    Set(root, "version", "1.8");
    AppendResources(root, table);
    pugi::xml_node event = root.append_child("library").append_child("event");
    Set(event, "name", name);
    pugi::xml_node project = event.append_child("project");
    Set(project, "name", name);
    pugi::xml_node sequence = project.append_child("sequence");
    Set(sequence, "format", kFormatId);
    Set(sequence, "tcStart", "0s");
    Set(sequence, "tcFormat", SourceNumbering(table).IsDropFrame() ? "DF" : "NDF");
    Set(sequence, "duration", Seconds(AppendClips(sequence.append_child("spine"), table), table.scale.rate));
    return TextOf(document);
}

} // namespace scenedetect
