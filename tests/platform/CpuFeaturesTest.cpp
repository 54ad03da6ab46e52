#include "platform/CpuFeatures.h"
#include "tests/Testing.h"

TEST(CpuFeatures, RestrictionTakesAwayAndGivesBack) {
    const unsigned all = CpuFeatures();
    RestrictCpuFeatures(kCpuSse2);
    EXPECT_EQ(CpuFeatures(), all & kCpuSse2);
    RestrictCpuFeatures(0);
    EXPECT_EQ(CpuFeatures(), 0u);
    RestrictCpuFeatures(kCpuAll);
    EXPECT_EQ(CpuFeatures(), all);
}

TEST(CpuFeatures, NamesOfTheEnvironmentVariable) {
    EXPECT_EQ(CpuFeaturesNamed("none"), 0u);
    EXPECT_EQ(CpuFeaturesNamed("sse2"), kCpuSse2);
    EXPECT_EQ(CpuFeaturesNamed(""), kCpuAll);
    EXPECT_EQ(CpuFeaturesNamed("SSE2"), kCpuAll);
}
