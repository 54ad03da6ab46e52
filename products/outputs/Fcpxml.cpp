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

void AppendResources(XmlElement& root, const SceneTable& table) {
    const Ratio rate = table.scale.rate;
    XmlElement& resources = root.Append("resources");
    XmlElement& format = resources.Append("format");
    format.Set("id", kFormatId);
    format.Set("frameDuration", Seconds(1, rate));
    format.Set("width", std::to_string(table.width));
    format.Set("height", std::to_string(table.height));
    if (table.pixelAspect.num != table.pixelAspect.den) {
        format.Set("paspH", std::to_string(table.pixelAspect.num));
        format.Set("paspV", std::to_string(table.pixelAspect.den));
    }
    XmlElement& asset = resources.Append("asset");
    asset.Set("id", kAssetId);
    asset.Set("name", PlainName(table.name));
    asset.Set("src", MediaUrl(table.input));
    asset.Set("start", Seconds(SourceStart(table), rate));
    asset.Set("duration", Seconds(EditFrameCount(table), rate));
    asset.Set("hasVideo", "1");
    asset.Set("format", kFormatId);
    if (table.audio) {
        asset.Set("hasAudio", "1");
        asset.Set("audioSources", "1");
        asset.Set("audioChannels", std::to_string(table.audio->channels));
        asset.Set("audioRate", std::to_string(table.audio->sampleRate));
    }
}

// Returns how many frames the clips last together.
std::int64_t AppendClips(XmlElement& spine, const SceneTable& table) {
    const Ratio rate = table.scale.rate;
    std::int64_t offset = 0;
    for (const EditSpan& span : EditSpans(table)) {
        XmlElement& clip = spine.Append("asset-clip");
        clip.Set("ref", kAssetId);
        clip.Set("name", ClipName(table, span.scene));
        clip.Set("offset", Seconds(offset, rate));
        clip.Set("start", Seconds(span.start, rate));
        clip.Set("duration", Seconds(span.frameCount, rate));
        clip.Set("tcFormat", SourceNumbering(table).IsDropFrame() ? "DF" : "NDF");
        offset += span.frameCount;
    }
    return offset;
}

} // namespace

std::string Fcpxml(const SceneTable& table) {
    RequireMediaUrl(table, "FCPXML");
    const std::string name = PlainName(table.name);
    XmlElement root("fcpxml");
    root.Set("version", "1.8");
    AppendResources(root, table);
    XmlElement& event = root.Append("library").Append("event");
    event.Set("name", name);
    XmlElement& project = event.Append("project");
    project.Set("name", name);
    XmlElement& sequence = project.Append("sequence");
    sequence.Set("format", kFormatId);
    sequence.Set("tcStart", "0s");
    sequence.Set("tcFormat", SourceNumbering(table).IsDropFrame() ? "DF" : "NDF");
    sequence.Set("duration", Seconds(AppendClips(sequence.Append("spine"), table), table.scale.rate));
    return root.Document(true);
}

} // namespace scenedetect
