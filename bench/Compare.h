// Two ways of doing a thing, timed in turn so that both meet the same machine.
#pragma once

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <limits>

namespace scenedetect {

/// Runs both in turn; the subject's time is the line's own. Returns how many times as fast as the reference
/// it is, which goes by the best times: other programs have no part in those.
template <typename Subject, typename Reference>
double Compare(benchmark::State& state, Subject&& subject, Reference&& reference) {
    using Clock = std::chrono::steady_clock;
    using Seconds = std::chrono::duration<double>;
    double bestSubject = std::numeric_limits<double>::max();
    double bestReference = bestSubject;
    for (auto _ : state) {
        const auto begin = Clock::now();
        reference();
        const auto middle = Clock::now();
        subject();
        const double subjectTime = Seconds(Clock::now() - middle).count();
        bestReference = std::min(bestReference, Seconds(middle - begin).count());
        bestSubject = std::min(bestSubject, subjectTime);
        state.SetIterationTime(subjectTime);
    }
    return bestReference / bestSubject;
}

} // namespace scenedetect
