#include "products/outputs/NameText.h"
#include "products/outputs/SceneTable.h"
#include "products/outputs/SceneWriters.h"

#include <nlohmann/json.hpp>

namespace scenedetect {
namespace {

using Json = nlohmann::ordered_json;

Json RationalTime(std::int64_t frames, double rate) {
    return {{"OTIO_SCHEMA", "RationalTime.1"}, {"rate", rate}, {"value", static_cast<double>(frames)}};
}

Json TimeRange(std::int64_t start, std::int64_t duration, double rate) {
    return {{"OTIO_SCHEMA", "TimeRange.1"},
            {"duration", RationalTime(duration, rate)},
            {"start_time", RationalTime(start, rate)}};
}

// What clips, tracks and stacks have in common.
Json Item(const char* schema, const std::string& name, const Json& sourceRange) {
    return {{"OTIO_SCHEMA", schema},       {"metadata", Json::object()}, {"name", name},
            {"source_range", sourceRange}, {"effects", Json::array()},   {"markers", Json::array()}};
}

Json MediaReference(const SceneTable& table) {
    const std::string url = MediaUrl(table.input);
    Json reference = {
        {"OTIO_SCHEMA", url.empty() ? "MissingReference.1" : "ExternalReference.1"},
        {"metadata", Json::object()},
        {"name", PlainName(table.name)},
        {"available_range", TimeRange(SourceStart(table), EditFrameCount(table), table.scale.rate.Value())}};
    if (!url.empty())
        reference["target_url"] = url;
    return reference;
}

Json Track(const SceneTable& table, const char* kind) {
    const Json reference = MediaReference(table);
    Json clips = Json::array();
    for (const EditSpan& span : EditSpans(table)) {
        // The first version of the clip: old readers know it, and new ones bring it up to date.
        Json clip = Item("Clip.1", ClipName(table, span.scene),
                         TimeRange(span.start, span.frameCount, table.scale.rate.Value()));
        clip["metadata"]["kxscenes"] = {{"scene", span.scene + 1},
                                        {"method", table.scenes[span.scene].method}};
        clip["media_reference"] = reference;
        clips.push_back(std::move(clip));
    }
    Json track = Item("Track.1", kind, nullptr);
    track["kind"] = kind;
    track["children"] = std::move(clips);
    return track;
}

} // namespace

std::string Otio(const SceneTable& table) {
    Json stack = Item("Stack.1", "tracks", nullptr);
    stack["children"] = Json::array();
    stack["children"].push_back(Track(table, "Video"));
    if (table.audio)
        stack["children"].push_back(Track(table, "Audio"));
    const Json timeline = {{"OTIO_SCHEMA", "Timeline.1"},
                           {"metadata", Json::object()},
                           {"name", PlainName(table.name)},
                           {"global_start_time", nullptr},
                           {"tracks", std::move(stack)}};
    return timeline.dump(2) + '\n';
}

} // namespace scenedetect
