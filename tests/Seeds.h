// Campaigns: the same check for as many seeds as wanted.
#pragma once

#include <cstdio>
#include <cstdlib>
#include <gtest/gtest.h>
#include <string>
#include <utility>

namespace scenedetect::testing_support {

/// Checks seed after seed: `usual` of them, or what SCENEDETECT_SEEDS says, a number ("100000") or where they
/// begin and end ("9934-9935", which is one).
template <typename Check>
void ForEachSeed(unsigned usual, Check check) {
    unsigned seed = 0;
    unsigned end = usual;
    const char* const wanted = std::getenv("SCENEDETECT_SEEDS");
    if (wanted && std::sscanf(wanted, "%u-%u", &seed, &end) == 1)
        end = std::exchange(seed, 0);
    for (; seed < end; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        check(seed);
    }
}

} // namespace scenedetect::testing_support
