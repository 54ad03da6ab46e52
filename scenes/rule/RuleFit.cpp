#include "scenes/rule/RuleFit.h"

#include <cstdlib>
#include <limits>

namespace scenedetect {
namespace {

// Levels that films' dark frames have, to begin with.
constexpr std::int32_t kDarkLevels[] = {-1, 10, 18, 25, 40};
constexpr int kMostRounds = 4;

class Fitting {
  public:
    Fitting(const FigureTable& table, std::span<const std::int32_t> wanted, const RuleSettings& own,
            const FitChoice& choice)
        : m_table(table), m_wanted(wanted), m_own(own), m_choice(choice), m_best{own} {
        if (!m_wanted.empty() && m_wanted.front() == 0)
            m_wanted = m_wanted.subspan(1);
        m_best.missed = std::numeric_limits<std::int32_t>::max();
        Try(own);
    }

    RuleFit Run() {
        for (const std::int32_t dark : kDarkLevels) {
            RuleSettings settings = m_own;
            if (m_choice.darkLevel)
                settings.parameters.darkLevel = dark;
            TryCuts(settings);
        }
        for (int round = 0; round < kMostRounds && m_hasImproved; ++round) {
            m_hasImproved = false;
            TryDarkLevels();
            TryEffects();
            if (m_hasImproved)
                TryCuts(m_best.settings);
        }
        return m_best;
    }

  private:
    void TryCuts(RuleSettings settings) {
        DetectionParameters& parameters = settings.parameters;
        const auto [leastVotes, mostVotes] = Tried(m_choice.minVotes, parameters.minVotes, 1, 4);
        const auto [least, most] = Tried(m_choice.cutThreshold, parameters.cutThreshold, 0, 255);
        for (parameters.minVotes = leastVotes; parameters.minVotes <= mostVotes; ++parameters.minVotes)
            for (parameters.cutThreshold = least; parameters.cutThreshold <= most; ++parameters.cutThreshold)
                Try(settings);
    }

    void TryDarkLevels() {
        RuleSettings settings = m_best.settings;
        std::int32_t& dark = settings.parameters.darkLevel;
        const auto [least, most] = Tried(m_choice.darkLevel, dark, -1, 255);
        for (dark = least; dark <= most; ++dark)
            Try(settings);
    }

    void TryEffects() {
        if (!m_table.HasDistances())
            return;
        RuleSettings settings = m_best.settings;
        const TransitionChoice own = settings.transitions;
        for (const bool drops : {false, true})
            for (const FadePlace fades :
                 {FadePlace::Off, FadePlace::Start, FadePlace::Middle, FadePlace::End})
                for (const bool finds : {false, true}) {
                    settings.transitions = {m_choice.flashes ? drops : own.dropsFlashes,
                                            m_choice.fades ? fades : own.fades,
                                            m_choice.dissolves ? finds : own.findsDissolves};
                    Try(settings);
                }
    }

    struct Range {
        std::int32_t least;
        std::int32_t most;
    };
    static Range Tried(bool isTried, std::int32_t own, std::int32_t least, std::int32_t most) {
        return isTried ? Range{least, most} : Range{own, own};
    }

    // How much a user would have to turn.
    [[nodiscard]] std::int32_t Farness(const RuleSettings& settings) const {
        const auto& [own, ownEffects, least, rule] = m_own;
        const DetectionParameters& parameters = settings.parameters;
        const TransitionChoice& effects = settings.transitions;
        return std::abs(parameters.cutThreshold - own.cutThreshold) +
               std::abs(parameters.darkLevel - own.darkLevel) +
               16 * std::abs(parameters.minVotes - own.minVotes) +
               64 * ((effects.dropsFlashes != ownEffects.dropsFlashes) + (effects.fades != ownEffects.fades) +
                     (effects.findsDissolves != ownEffects.findsDissolves));
    }

    // Given up as soon as it can't be the best any more.
    void Try(const RuleSettings& settings) {
        const std::int32_t farness = Farness(settings);
        const std::int64_t most = m_best.Errors() - (farness < m_farness ? 0 : 1);
        RuleFit fit{settings};
        std::size_t seen = 0;
        std::span<const std::int32_t> left = m_wanted;
        const auto compare = [&](const std::vector<SceneRows>& scenes) {
            for (; seen < scenes.size(); ++seen) {
                const std::int64_t row = scenes[seen].begin;
                for (; !left.empty() && left.front() < row; left = left.subspan(1))
                    ++fit.missed;
                if (!left.empty() && left.front() == row) {
                    ++fit.kept;
                    left = left.subspan(1);
                } else if (row != 0) {
                    ++fit.added;
                }
            }
            return fit.Errors() <= most;
        };
        if (most < 0 || !compare(DecideRows(
                            m_table, settings, {}, [](auto&&...) {}, compare)))
            return;
        fit.missed += static_cast<std::int64_t>(left.size());
        if (fit.Errors() > most)
            return;
        m_best = fit;
        m_farness = farness;
        m_hasImproved = true;
    }

    const FigureTable& m_table;
    std::span<const std::int32_t> m_wanted;
    const RuleSettings m_own;
    const FitChoice m_choice;
    RuleFit m_best;
    std::int32_t m_farness = std::numeric_limits<std::int32_t>::max();
    bool m_hasImproved = false;
};

} // namespace

RuleFit FitRule(const FigureTable& table, std::span<const std::int32_t> wanted, const RuleSettings& own,
                const FitChoice& choice) {
    return Fitting(table, wanted, own, choice).Run();
}

} // namespace scenedetect
