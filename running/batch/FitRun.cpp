#include "running/batch/FitRun.h"

#include "products/listed/ListedScenes.h"
#include "products/stats/DecideAgain.h"
#include "reading/base/ListText.h"
#include "scenes/ParameterNames.h"

#include <algorithm>
#include <vector>

namespace scenedetect {
namespace {

// The rows that the scenes of a list begin with.
std::vector<std::int32_t> RowsOf(const SceneList& list, const Stats& stats, const MediaInfo& media) {
    const TimeScale& scale = stats.settings.scale;
    ListedScenes listed(list, scale, media.startTimecode);
    std::vector<std::int32_t> rows;
    for (const StatsRow& row : stats.rows)
        if (listed.At(row.place).begins)
            rows.push_back(static_cast<std::int32_t>(row.figures.dwPosition));
    listed.Finish(PlaceAfter(stats.rows.back().place, scale));
    return rows;
}

using Word = std::pair<std::string, std::string>; // an option without its dashes, and its value

// The parameters that can be turned, and the effects, as options.
std::vector<Word> WordsOf(const RuleSettings& settings) {
    std::vector<Word> words;
    for (std::size_t i = 0; i < kDetectionParameters.size(); ++i)
        if (i < KxAreaLeft)
            words.emplace_back(kParameterNames[i],
                               std::to_string(kDetectionParameters[i].Of(settings.parameters)));
    const TransitionChoice& effects = settings.transitions;
    words.emplace_back("area", AreaText(settings.parameters));
    words.emplace_back("flashes", effects.dropsFlashes ? "drop" : "keep");
    words.emplace_back("fades", kFadeWords[static_cast<std::size_t>(effects.fades)]);
    words.emplace_back("dissolves", effects.findsDissolves ? "on" : "off");
    return words;
}

// Those of one that the other has not.
std::vector<Word> Differing(const RuleSettings& one, const RuleSettings& other) {
    std::vector<Word> words = WordsOf(one);
    const std::vector<Word> others = WordsOf(other);
    std::erase_if(words, [&others](const Word& word) { return std::ranges::count(others, word) != 0; });
    return words;
}

std::string ShellWord(const std::string& word) {
    constexpr const char* kSafe = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789_-+./:,=@%";
    if (!word.empty() && word.find_first_not_of(kSafe) == word.npos)
        return word;
    std::string quoted = "'";
    for (const char each : word)
        quoted += each == '\'' ? std::string("'\\''") : std::string(1, each);
    return quoted + '\'';
}

} // namespace

RuleFit FitList(const BatchSettings& settings, const Stats& stats, const MediaInfo& media,
                const RuleSettings& own) {
    RequireDecidable(stats, own);
    const auto isFree = [&given = settings.detection.parameters.values](KxDetectionParameter parameter) {
        return !given[parameter];
    };
    const TransitionChoice& effects = settings.detection.transitions;
    const std::vector<std::int32_t> rows = RowsOf(ReadSceneListFile(settings.fitPath), stats, media);
    return FitRule(TableOf(stats), rows, own,
                   {isFree(KxCutThreshold), isFree(KxDarkLevel), isFree(KxVotes), !effects.dropsFlashes,
                    !effects.FindsFades(), !effects.findsDissolves});
}

std::string FitText(const RuleFit& fit, const RuleSettings& own) {
    std::string turned;
    const std::vector<Word> words = Differing(fit.settings, own);
    for (auto [name, value] : words) {
        std::ranges::replace(name, '-', ' ');
        AppendToList(turned, ", ", name);
        turned += ' ' + value;
    }
    const std::int64_t wanted = fit.kept + fit.missed;
    const std::string cuts = std::to_string(wanted) + (wanted == 1 ? " cut" : " cuts");
    return (turned.empty() ? "what is set" : turned) + (words.size() > 1 ? " give " : " gives ") +
           (fit.missed == 0 ? "all of your " : std::to_string(fit.kept) + " of your ") + cuts +
           (fit.added == 0   ? " and no other"
            : fit.added == 1 ? " and one more"
                             : " and " + std::to_string(fit.added) + " more");
}

std::string FitCommand(const RuleFit& fit, const SceneLength& length, const std::string& input) {
    std::string command = "kxscenes";
    for (const auto& [name, value] : Differing(fit.settings, {}))
        command += " --" + name + (name == "dissolves" ? "" : ' ' + ShellWord(value));
    if (length.least)
        command += " --min-scene " + ShellWord(length.least->text);
    if (length.least && length.rule != ShortRule::Merge)
        command += std::string(" --short-scenes ") + kShortRules[static_cast<std::size_t>(length.rule)];
    return command + ' ' + ShellWord(input);
}

} // namespace scenedetect
