// From a run's figures, parameters, effects and lengths to its scenes: the one way there is.
#pragma once

#include "scenes/rule/FigureRule.h"
#include "scenes/rule/FigureTable.h"
#include "scenes/rule/SceneLengths.h"

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace scenedetect {

struct RuleSettings {
    DetectionParameters parameters;
    TransitionChoice transitions{}; ///< none for a table without distances
    std::optional<LeastLength> least{};
    ShortRule shortScenes = ShortRule::Merge;
};

/// A scene that stays; its end is the row after its last one.
struct SceneRows {
    std::int64_t begin;
    std::int64_t end;
    SceneKind kind;
    bool isOther; ///< found by something else, too
};

/// Takes scenes in order, with a least length for each, and hands out those that stay.
class LastingScenes {
  public:
    explicit LastingScenes(const RuleSettings& settings) : m_rule(settings.least, settings.shortScenes) {}

    void Add(const RuledScene& scene, const FrameAndTime& place) {
        const auto [waiting, added] = m_rule.Add(place);
        Settle(waiting);
        if (added == LengthRule::Fate::Stays)
            Keep(scene);
        else if (added == LengthRule::Fate::Waits)
            m_waiting = scene;
    }
    void Finish(const FigureTable& table) {
        Settle(m_rule.Finish(table.end));
        End(table.Rows());
    }
    /// The ends of all but the last are known, before Finish.
    [[nodiscard]] const std::vector<SceneRows>& Scenes() const { return m_scenes; }

  private:
    void Settle(LengthRule::Fate waiting) {
        if (waiting == LengthRule::Fate::Stays)
            Keep(m_waiting);
        else if (waiting == LengthRule::Fate::Dropped)
            End(m_waiting.row);
    }
    void Keep(const RuledScene& scene) {
        End(scene.row);
        m_scenes.push_back({scene.row, kOpen, scene.kind, scene.isOther});
    }
    void End(std::int64_t row) {
        if (!m_scenes.empty() && m_scenes.back().end == kOpen)
            m_scenes.back().end = row;
    }

    static constexpr std::int64_t kOpen = -1;

    LengthRule m_rule;
    std::vector<SceneRows> m_scenes;
    RuledScene m_waiting{};
};

/// The scenes of the whole table, with those that `others` (ascending rows) adds to them. `note(row,
/// judgement, decision)` is told what each row brings; `goesOn(scenes)` is asked after each scene, and ends
/// it by false. Throws std::bad_alloc at the most.
template <typename Note, typename GoesOn>
std::vector<SceneRows> DecideRows(const FigureTable& table, const RuleSettings& settings,
                                  std::span<const std::int32_t> others, Note note, GoesOn goesOn) {
    FigureRule rule(settings.parameters, settings.transitions);
    LastingScenes lasting(settings);
    const auto add = [&](const RuledScene& scene) {
        lasting.Add(scene, table.places[static_cast<std::size_t>(scene.row)]);
    };
    const auto takeAll = [&] {
        while (const auto scene = rule.Take()) {
            for (; !others.empty() && others.front() < scene->row; others = others.subspan(1))
                add({others.front(), SceneKind::Other, true});
            const bool isOther = !others.empty() && others.front() == scene->row;
            if (isOther)
                others = others.subspan(1);
            add({scene->row, scene->kind, isOther});
            if (!goesOn(lasting.Scenes()))
                return false;
        }
        return true;
    };
    const Distances none;
    for (std::int64_t row = 0; row < table.Rows(); ++row) {
        const auto at = static_cast<std::size_t>(row);
        const Judgement judgement = rule.Add(table.difference[at], table.level[at],
                                             settings.transitions.IsEmpty() ? none : table.DistancesOf(row));
        note(row, judgement, rule.State());
        if (!takeAll())
            return lasting.Scenes();
    }
    rule.Finish();
    if (takeAll()) {
        for (const std::int32_t row : others)
            add({row, SceneKind::Other, true});
        lasting.Finish(table);
    }
    return lasting.Scenes();
}

} // namespace scenedetect
