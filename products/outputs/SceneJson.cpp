#include "products/outputs/SceneTable.h"
#include "products/outputs/SceneWriters.h"

#include <nlohmann/json.hpp>

#include <numeric>

namespace scenedetect {
namespace {

using Json = nlohmann::ordered_json;

std::string RatioText(std::int64_t num, std::int64_t den) {
    const std::int64_t common = std::gcd(num, den);
    return std::to_string(num / common) + '/' + std::to_string(den / common);
}

std::string RatioText(Ratio ratio) {
    return RatioText(ratio.num, ratio.den);
}

Json PlaceJson(const SceneTable& table, const FilePlace& place) {
    const Ratio unit = table.scale.unit;
    Json json = {{"frame", place.frame},
                 {"time", RatioText(place.time * unit.num, unit.den)},
                 {"seconds", static_cast<double>(place.time) * unit.num / unit.den},
                 {"timecode", TimecodeText(place.time, table.scale)}};
    if (table.startTimecode)
        json["source_timecode"] = SourceTimecodeText(place, table.scale, *table.startTimecode);
    return json;
}

} // namespace

std::string SceneJson(const SceneTable& table) {
    Json json = {{"schema", "kxscenes"},
                 {"version", 1},
                 {"input", table.input},
                 {"name", table.name},
                 {"width", table.width},
                 {"height", table.height},
                 {"pixel_aspect", RatioText(table.pixelAspect)},
                 {"rate", RatioText(table.scale.rate)},
                 {"constant_rate", HasConstantRate(table)},
                 {"frame_count", table.frameCount}};
    if (!table.partial.empty())
        json["partial"] = table.partial;
    json["scenes"] = Json::array();
    for (std::size_t i = 0; i < table.scenes.size(); ++i) {
        const SceneSpan& scene = table.scenes[i];
        Json& each = json["scenes"].emplace_back(Json{{"scene", i + 1}, {"method", scene.method}});
        if (!scene.name.empty())
            each["name"] = scene.name;
        each.update({{"start", PlaceJson(table, scene.start)},
                     {"end", PlaceJson(table, scene.end)},
                     {"length", scene.FrameCount()}});
        for (const TapeColumn& column : kTapeColumns)
            if (const std::string& text = scene.tape.*column.text; !text.empty())
                each["tape"][column.key] = text;
    }
    // Names of files may hold bytes that are no text.
    return json.dump(2, ' ', false, Json::error_handler_t::replace) + '\n';
}

} // namespace scenedetect
