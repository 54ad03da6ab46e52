// Raw DV through damage at random: a tape a seed.
#include "tests/DvFrame.h"
#include "tests/Seeds.h"
#include "tests/reading/readers/RandomDamage.h"
#include "tests/reading/readers/WaysOfReading.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace scenedetect {
namespace {

using namespace testing_support;
using Bytes = std::vector<std::uint8_t>;

constexpr int kFrames = 9;

Bytes UndamagedTape(bool is625) {
    Bytes tape;
    for (int i = 0; i < kFrames; ++i)
        AppendDifFrame(tape, is625, i);
    return tape;
}

void Check(unsigned seed) {
    static const Bytes tapes[] = {UndamagedTape(false), UndamagedTape(true)};
    const RandomDamage damage(tapes[seed % 2], kFrames, seed);
    const Outcome run = ReadAll(damage.Stream(), Way::File);
    EXPECT_TRUE(run.isOfStream);
    EXPECT_EQ(run, ReadAll(damage.Stream(), Way::Pipe, seed));
    EXPECT_EQ(run, ReadAll(damage.Stream(), Way::TwoThreads));
    EXPECT_TRUE(run.places.empty() || IsAllTold(run, std::ssize(damage.Stream())));

    std::vector<std::int64_t> offsets;
    for (const FilePlace& place : run.places)
        offsets.push_back(place.byteOffset);
    for (std::size_t i = 0; i < kFrames; ++i) {
        const TapeFrame& frame = damage.Frames()[i];
        const auto found = std::ranges::find(offsets, frame.offset);
        EXPECT_TRUE(!frame.isIntact || found != offsets.end()) << "frame " << i;
        if (damage.HasCertainNumber(i) && found != offsets.end()) {
            const auto index = static_cast<std::size_t>(found - offsets.begin());
            EXPECT_EQ(run.places[index].frame, frame.frame);
        }
    }
    // Of a frame that has lost bytes all blocks after these are displaced.
    for (const std::int64_t loser : damage.OffsetsOfLosers())
        EXPECT_THAT(offsets, testing::Not(testing::Contains(loser)));
}

TEST(RawDvDamage, CostsNoFrameButTheDamaged) {
    ForEachSeed(400, Check);
}

} // namespace
} // namespace scenedetect
