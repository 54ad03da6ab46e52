#include "products/report/RunJson.h"

#include "products/report/Base64.h"
#include "scenes/ParameterNames.h"

#include <nlohmann/json.hpp>

namespace scenedetect {
namespace {

using Json = nlohmann::ordered_json;

// Those that act inside the differences can't be turned afterwards.
constexpr std::int32_t DetectionParameters::*kFixed = &DetectionParameters::diffClamp;

Json Pair(std::int64_t one, std::int64_t other) {
    return Json::array({one, other});
}

Json FiguresJson(const ReportContent& content) {
    Json json = {{"rows", content.figures.Rows()}, {"step", content.figures.Step()}};
    json["places"] = Json::array();
    for (const auto& [row, frame, time] : content.figures.Places())
        json["places"].push_back({row, frame, time});
    json["times"] = content.figures.HasDurations();
    json["columns"] = Json::array();
    for (const ReportFigures::Column& column : ColumnsOf(content))
        json["columns"].push_back(column.name);
    return json;
}

// Names as options have them; the page's are those of scripts.
std::string ScriptName(const char* option) {
    std::string name;
    for (bool isUpper = false; const char letter : std::string_view(option)) {
        if (letter != '-')
            name +=
                isUpper && letter >= 'a' && letter <= 'z' ? static_cast<char>(letter - 'a' + 'A') : letter;
        isUpper = letter == '-';
    }
    return name;
}

Json RuleJson(const ReportContent& content) {
    const RuleSettings& rule = content.rule;
    Json json;
    for (std::size_t i = 0; i < kDetectionParameters.size(); ++i)
        json["parameters"][ScriptName(kParameterNames[i])] = kDetectionParameters[i].Of(rule.parameters);
    json["ranges"] = Json::array();
    for (std::size_t i = 0; i < kParameterEffects.size(); ++i) {
        const ParameterRange& range = kDetectionParameters[i];
        if (range.value != kFixed)
            json["ranges"].push_back({{"name", ScriptName(kParameterNames[i])},
                                      {"option", std::string("--") + kParameterNames[i]},
                                      {"help", kParameterEffects[i]},
                                      {"least", range.least},
                                      {"most", range.most},
                                      {"default", range.Of({})}});
    }
    json["choice"] = {{"flashes", rule.transitions.dropsFlashes ? "drop" : "keep"},
                      {"fades", kFadeWords[static_cast<std::size_t>(rule.transitions.fades)]},
                      {"dissolves", rule.transitions.findsDissolves}};
    const LeastLength least = rule.least.value_or(LeastLength{});
    json["minScene"] = {{"text", content.leastText},
                        {"frames", least.isTime ? 0 : least.count},
                        {"time", least.isTime ? least.count : 0}};
    json["shortScenes"] = kShortRules[static_cast<std::size_t>(rule.shortScenes)];
    return json;
}

Json SceneJson(const ReportContent& content, std::size_t index, std::size_t& pictures) {
    const SceneTable& table = content.table;
    const SceneSpan& scene = table.scenes[index];
    Json json = {{"row", scene.sample < content.figures.Rows() ? scene.sample : -1},
                 {"frame", scene.start.frame},
                 {"time", scene.start.time},
                 {"endFrame", scene.end.frame},
                 {"endTime", scene.end.time},
                 {"method", scene.method},
                 {"name", scene.name},
                 {"timecode", SceneTimecode(scene.tape, scene.start, table.scale, table.startTimecode)}};
    json["tape"] = Json::object();
    for (const TapeColumn& column : kTapeColumns)
        if (const std::string& text = scene.tape.*column.text; !text.empty())
            json["tape"][column.key] = text;
    json["picture"] = nullptr;
    if (index < content.pictures.size() && !content.pictures[index].empty())
        json["picture"] = pictures++;
    return json;
}

// What a parser of pages could take for the end of the element.
std::string WithoutTags(const std::string& json) {
    std::string text;
    for (const char each : json)
        if (each == '<')
            text += "\\u003c";
        else
            text += each;
    return text;
}

// Of the film: the last scene's, unless short ones were left out after it.
FilePlace EndOf(const ReportContent& content) {
    const std::vector<SceneSpan>& scenes = content.table.scenes;
    const FilePlace last = scenes.empty() ? FilePlace{} : scenes.back().end;
    const FilePlace after = content.figures.End();
    return last.frame < after.frame ? after : last;
}

} // namespace

std::vector<ReportFigures::Column> ColumnsOf(const ReportContent& content) {
    if (content.figures.Rows() == 0)
        return {};
    return content.figures.Columns(EndOf(content).time);
}

std::string RunJson(const ReportContent& content) {
    const SceneTable& table = content.table;
    const FrameNumbering numbering = SourceNumbering(table);
    Json json = {{"format", 1},
                 {"name", table.name},
                 {"input", table.input},
                 {"film", content.film.empty() ? Json() : Json(content.film)},
                 {"rate", Pair(table.scale.rate.num, table.scale.rate.den)},
                 {"unit", Pair(table.scale.unit.num, table.scale.unit.den)},
                 {"startTimecode", table.startTimecode
                                       ? Json(SourceTimecodeText({}, table.scale, *table.startTimecode))
                                       : Json()},
                 {"sourceStart", SourceStart(table)},
                 {"dropFrame", numbering.IsDropFrame()},
                 {"frameCount", table.frameCount},
                 {"pixelAspect", Pair(table.pixelAspect.num, table.pixelAspect.den)},
                 {"delay", MediaTime(table, {})},
                 {"quarterTurns", table.quarterTurns},
                 {"partial", table.partial},
                 {"width", table.width},
                 {"height", table.height},
                 {"variable", !HasConstantRate(table)},
                 {"command", content.command}};
    const FilePlace end = EndOf(content);
    json["end"] = {{"frame", end.frame}, {"time", end.time}};
    json.update(FiguresJson(content));
    json.update(RuleJson(content));
    std::size_t pictures = 0;
    json["scenes"] = Json::array();
    for (std::size_t i = 0; i < table.scenes.size(); ++i)
        json["scenes"].push_back(SceneJson(content, i, pictures));
    json["pictures"] = Json::array();
    for (const std::vector<std::uint8_t>& jpeg : content.pictures)
        if (!jpeg.empty())
            json["pictures"].push_back("data:image/jpeg;base64," + Base64(jpeg));
    json["settings"] = content.settings;
    return WithoutTags(json.dump(-1, ' ', false, Json::error_handler_t::replace));
}

} // namespace scenedetect
