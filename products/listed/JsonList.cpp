#include "products/listed/ListReaders.h"
#include "products/listed/SceneList.h"
#include "reading/base/HostError.h"

#include <nlohmann/json.hpp>

#include <charconv>

namespace scenedetect {
namespace {

using Json = nlohmann::json;

// "30000/1001"
std::optional<Ratio> RatioOf(const std::string& text) {
    Ratio ratio;
    const char* const end = text.data() + text.size();
    const auto [slash, error] = std::from_chars(text.data(), end, ratio.num);
    if (error != std::errc() || slash == end || *slash != '/')
        return std::nullopt;
    const auto [stop, denError] = std::from_chars(slash + 1, end, ratio.den);
    const bool isWhole = denError == std::errc() && stop == end && ratio.num > 0 && ratio.den > 0;
    return isWhole ? std::optional(ratio) : std::nullopt;
}

std::optional<ClockPoint> ClockOf(const Json& place) {
    constexpr double kMostSeconds = 1e9;
    constexpr double kNanoseconds = 1e9;
    const double seconds = place.value("seconds", -1.0);
    if (!(seconds >= 0 && seconds < kMostSeconds))
        return std::nullopt;
    return ClockPoint{std::llround(seconds * kNanoseconds)};
}

// A frame, or else seconds, or else timecode counted from the first frame.
ListedPoint PointOf(const Json& place) {
    const auto clock = ClockOf(place);
    if (place.contains("frame"))
        return {ParseTimePoint(place.at("frame").dump()), clock};
    if (clock)
        return {{*clock, std::to_string(place.at("seconds").get<double>()) + 's'}, {}};
    return {ParseTimePoint(place.at("timecode").get<std::string>()), {}};
}

ListedScene SceneOf(const Json& json) {
    ListedScene scene{
        PointOf(json.at("start")), {}, json.value("method", kListedMethod), json.value("name", "")};
    if (json.contains("end"))
        scene.end = PointOf(json.at("end"));
    return scene;
}

} // namespace

void ReadJsonList(std::string_view text, SceneList& list) {
    std::string where;
    try {
        const Json json = Json::parse(text);
        if (json.value("schema", "") != "kxscenes" || json.value("version", 0) != 1)
            FailInList(list.path, "", "no scene list of version 1 of kxscenes");
        list.rate = RatioOf(json.value("rate", ""));
        for (const Json& each : json.at("scenes")) {
            where = "scene " + std::to_string(list.scenes.size() + 1);
            list.scenes.push_back(SceneOf(each));
            list.scenes.back().where = where;
        }
    } catch (const Json::exception& error) {
        FailInList(list.path, where, error.what());
    } catch (const HostError& error) {
        if (where.empty())
            throw;
        FailInList(list.path, where, error.what());
    }
}

} // namespace scenedetect
