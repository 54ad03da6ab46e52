// The rule as the report's page calls it: compiled to a WebAssembly module, which holds one run's figures.
#include "scenes/rule/RuleFit.h"

#include <cstdlib>
#include <cstring>
#include <new>

using namespace scenedetect;

// Nothing is thrown here: without memory the module ends, and the page says so.
void* operator new(std::size_t size) {
    void* memory = std::malloc(size);
    if (!memory)
        __builtin_trap();
    return memory;
}
void operator delete(void* memory) noexcept {
    std::free(memory);
}
void operator delete(void* memory, std::size_t /*size*/) noexcept {
    std::free(memory);
}

namespace {

// Numbers as the page hands them over, and takes them back after a fit. rule.js has the same order.
struct Settings {
    std::int32_t cutThreshold;
    std::int32_t darkLevel;
    std::int32_t minVotes;
    std::int32_t longestScene;
    std::int32_t dropsFlashes;
    std::int32_t fades; // as FadePlace
    std::int32_t findsDissolves;
    std::int32_t hasLeast;
    std::int32_t leastIsTime;
    std::int32_t shortScenes; // as ShortRule
    double least;
};

struct Explanation {
    std::int32_t isJudged;
    std::int32_t filled; // -1: it is not
    std::int32_t isDark;
    std::int32_t isCut;
    std::int32_t exceeded; // bits
    std::int32_t isLocked;
    std::int32_t isBeside;
    std::int32_t isLongest;
    std::int32_t differences[5]; // of the row and two on either side, as they were judged
};

FigureTable g_table;
Settings g_settings;
std::vector<std::int32_t> g_input; // rows that the page names
std::vector<SceneRows> g_scenes;
Explanation g_explanation;
std::int32_t g_counts[3];

RuleSettings Given() {
    RuleSettings settings;
    settings.parameters.cutThreshold = g_settings.cutThreshold;
    settings.parameters.darkLevel = g_settings.darkLevel;
    settings.parameters.minVotes = g_settings.minVotes;
    settings.parameters.longestScene = g_settings.longestScene;
    if (g_table.HasDistances())
        settings.transitions = {g_settings.dropsFlashes != 0, static_cast<FadePlace>(g_settings.fades),
                                g_settings.findsDissolves != 0};
    if (g_settings.hasLeast != 0)
        settings.least =
            LeastLength{static_cast<std::int64_t>(g_settings.least), g_settings.leastIsTime != 0};
    settings.shortScenes = static_cast<ShortRule>(g_settings.shortScenes);
    return settings;
}

void GiveBack(const RuleSettings& settings) {
    g_settings.cutThreshold = settings.parameters.cutThreshold;
    g_settings.darkLevel = settings.parameters.darkLevel;
    g_settings.minVotes = settings.parameters.minVotes;
    g_settings.dropsFlashes = settings.transitions.dropsFlashes;
    g_settings.fades = static_cast<std::int32_t>(settings.transitions.fades);
    g_settings.findsDissolves = settings.transitions.findsDissolves;
}

constexpr auto kToTheEnd = [](const std::vector<SceneRows>&) { return true; };

} // namespace

#define PAGE_ENTRY(name) extern "C" __attribute__((export_name(#name)))

/// Room for a column: 0 difference, 1 level, 2 to 9 distances, 10 variances, 11 details (two bytes each).
PAGE_ENTRY(column) void* Column(std::int32_t index, std::int32_t rows) {
    const auto count = static_cast<std::size_t>(rows);
    if (index >= 10) {
        std::vector<std::uint16_t>& column = index == 10 ? g_table.variance : g_table.detail;
        column.assign(count, 0);
        return column.data();
    }
    std::vector<std::uint8_t>& column = index == 0   ? g_table.difference
                                        : index == 1 ? g_table.level
                                                     : g_table.back[static_cast<std::size_t>(index - 2)];
    column.assign(count, 0);
    return column.data();
}

/// Rows from this one on, up to the next call's, lie at this place and those after it; `end` closes the last.
PAGE_ENTRY(place) void Place(double frame, double time, double step, std::int32_t rows) {
    for (std::int32_t i = 0; i < rows; ++i)
        g_table.places.push_back({static_cast<std::int64_t>(frame) + i,
                                  static_cast<std::int64_t>(time) + i * static_cast<std::int64_t>(step)});
}
PAGE_ENTRY(clearPlaces) void ClearPlaces(double endFrame, double endTime) {
    g_table.places.clear();
    g_table.end = {static_cast<std::int64_t>(endFrame), static_cast<std::int64_t>(endTime)};
}

PAGE_ENTRY(settings) Settings* SettingsOf() {
    return &g_settings;
}
/// Room for rows that the page names: those of other methods, or those that are wanted.
PAGE_ENTRY(input) std::int32_t* Input(std::int32_t count) {
    g_input.assign(static_cast<std::size_t>(count), 0);
    return g_input.data();
}

/// How many scenes there are.
PAGE_ENTRY(decide) std::int32_t Decide() {
    g_scenes = DecideRows(
        g_table, Given(), g_input, [](auto&&...) {}, kToTheEnd);
    return static_cast<std::int32_t>(g_scenes.size());
}
PAGE_ENTRY(sceneBegin) std::int32_t SceneBegin(std::int32_t index) {
    return static_cast<std::int32_t>(g_scenes[static_cast<std::size_t>(index)].begin);
}
PAGE_ENTRY(sceneEnd) std::int32_t SceneEnd(std::int32_t index) {
    return static_cast<std::int32_t>(g_scenes[static_cast<std::size_t>(index)].end);
}
PAGE_ENTRY(sceneKind) std::int32_t KindOfScene(std::int32_t index) {
    const SceneRows& scene = g_scenes[static_cast<std::size_t>(index)];
    return static_cast<std::int32_t>(scene.kind) | (scene.isOther ? 128 : 0);
}

PAGE_ENTRY(explain) Explanation* Explain(std::int32_t row) {
    g_explanation = {};
    g_explanation.filled = -1;
    bool isOver = false;
    const auto note = [&](std::int64_t now, const Judgement& judgement, const Decision& decision) {
        if (now == row + std::int64_t{1} && judgement.filled)
            g_explanation.filled = *judgement.filled;
        if (now != row + std::int64_t{2})
            return;
        g_explanation.isJudged = judgement.isJudged;
        g_explanation.isDark = judgement.isDark;
        g_explanation.isCut = judgement.sceneStart >= 1;
        g_explanation.exceeded = judgement.exceeded;
        g_explanation.isLocked = judgement.isLocked;
        g_explanation.isBeside = judgement.isBeside;
        g_explanation.isLongest = judgement.isLongest;
        std::memcpy(g_explanation.differences, decision.Differences().data(),
                    sizeof g_explanation.differences);
        isOver = true;
    };
    RuleSettings settings = Given();
    settings.transitions = {}; // the comparison alone
    DecideRows(g_table, settings, {}, note, [&](const std::vector<SceneRows>&) { return !isOver; });
    return &g_explanation;
}

/// The settings become the best; kept, missed, added.
PAGE_ENTRY(fit) std::int32_t* Fit() {
    const RuleFit fit = FitRule(g_table, g_input, Given(), {});
    GiveBack(fit.settings);
    g_counts[0] = static_cast<std::int32_t>(fit.kept);
    g_counts[1] = static_cast<std::int32_t>(fit.missed);
    g_counts[2] = static_cast<std::int32_t>(fit.added);
    return g_counts;
}
