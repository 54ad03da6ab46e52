#include "running/batch/Progress.h"
#include "tests/Testing.h"

namespace {

TEST(Progress, TellsTheTimeLeft) {
    using namespace std::chrono_literals;
    EXPECT_EQ(ProgressText(3000, -1, 2s), "3000 frames  1500 fps");
    EXPECT_EQ(ProgressText(600, 0.25, 20s), "600 frames  30 fps  25%  1:00 left");
    EXPECT_EQ(ProgressText(120, 0.01, 60s), "120 frames  2 fps  1%  1:39:00 left"); // 99 minutes
    EXPECT_EQ(ProductsText(600, 3, 12, "clips"), "600 frames  3 of 12 clips");
}

} // namespace
