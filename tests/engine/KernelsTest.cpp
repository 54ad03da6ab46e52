#include "engine/kernels/BlockSums.h"
#include "engine/kernels/ByteSums.h"
#include "platform/CpuFeatures.h"
#include "tests/Testing.h"
#include "tests/engine/BitmapMaking.h"

namespace {

using enum PixelLayout;
constexpr PixelLayout kLayouts[] = {Yuy2, Uyvy, Planar, Rgb24, Rgb32, Palette8, Rgb565, Rgb555, Luma16};
constexpr unsigned kCpuMasks[] = {0, kCpuSse2, kCpuAll};

/// Runs `kernel` and the reference over many shapes; the first shape on which they differ, or on which the
/// kernel writes beyond its sums. The pixels are allocated to the byte, for the address sanitizer.
std::optional<std::string> FindFault(PixelLayout layout, BlockSums kernel, int side = 8) {
    constexpr std::uint32_t kGuard = 0xDEADBEEF;
    const LayoutFacts facts = FactsOf(layout);
    std::vector<std::uint16_t> palette(257, 0xFFFF);
    for (std::size_t i = 0; i < 256; ++i)
        palette[i] = static_cast<std::uint16_t>(i * 37 % 766);
    unsigned seed = 0;
    const std::ptrdiff_t last = side - 1;
    for (const int blocks : {1, 2, 3, 4, 7, 8, 31})
        for (const int padding : {-side, 0, 5})
            for (const int down : {1, -1}) {
                const std::ptrdiff_t rowBytes = blocks * side * facts.pixelPitch + padding;
                const int lastRun = (blocks - 1) * side * facts.pixelPitch + side * facts.pixelStep;
                auto bytes = RandomBytes(static_cast<std::size_t>(last * rowBytes + lastRun), ++seed);
                if (padding == 0)
                    std::ranges::fill(bytes, std::uint8_t{255}); // the greatest sums
                const BlockRow row{&bytes[down > 0 ? 0 : static_cast<std::size_t>(last * rowBytes)],
                                   down * rowBytes,
                                   blocks,
                                   side,
                                   side,
                                   palette.data(),
                                   static_cast<int>(seed % 9)};
                std::vector<std::uint32_t> expected(static_cast<std::size_t>(blocks) + 1, kGuard);
                std::vector<std::uint32_t> sums = expected;
                ScalarBlockSums(layout)(row, expected.data());
                kernel(row, sums.data());
                if (sums != expected)
                    return std::to_string(blocks) + " blocks, rows of " + std::to_string(rowBytes);
            }
    return std::nullopt;
}

TEST(Kernels, AreTheReferencesWithoutCpuFeatures) {
    for (const PixelLayout layout : kLayouts)
        EXPECT_EQ(SelectBlockSums(layout, 8, 0), ScalarBlockSums(layout));
    EXPECT_EQ(SelectByteSum(0), ScalarByteSum);
    EXPECT_EQ(SelectDifferenceSum(0), ScalarDifferenceSum);
    if ((CpuFeatures() & kCpuSse2) != 0) {
        EXPECT_NE(SelectBlockSums(Planar, 8, kCpuSse2), ScalarBlockSums(Planar));
        EXPECT_EQ(SelectBlockSums(Planar, 5, kCpuSse2), ScalarBlockSums(Planar)) << "they sum blocks of 8";
        EXPECT_NE(SelectByteSum(kCpuSse2), ScalarByteSum);
        EXPECT_NE(SelectDifferenceSum(kCpuSse2), ScalarDifferenceSum);
    }
}

TEST(BlockSums, EveryKernelEqualsTheReference) {
    for (const PixelLayout layout : kLayouts)
        for (const unsigned mask : kCpuMasks)
            EXPECT_EQ(FindFault(layout, SelectBlockSums(layout, 8, mask & CpuFeatures())), std::nullopt)
                << "layout " << static_cast<int>(layout) << ", cpu " << mask;
    for (const int side : {1, 2, 4})
        EXPECT_EQ(FindFault(Planar, SelectBlockSums(Planar, side, 0), side), std::nullopt) << side;
}

TEST(BlockSums, BrokenKernelsAreFound) {
    constexpr PixelLayout kLayout = Planar;
    const BlockSums offByOne = [](const BlockRow& row, std::uint32_t* sums) {
        ScalarBlockSums(kLayout)(row, sums);
        sums[row.blocks - 1] ^= 1;
    };
    const BlockSums oneTooMany = [](const BlockRow& row, std::uint32_t* sums) {
        ScalarBlockSums(kLayout)(row, sums);
        sums[row.blocks] = 0;
    };
    for (const BlockSums broken : {offByOne, oneTooMany})
        EXPECT_NE(FindFault(kLayout, broken), std::nullopt);
}

// 0x0A5C: the words' bits from the lowest, from the third and from the highest eight on.
TEST(BlockSums, WordsOfLumaAreShifted) {
    constexpr std::uint16_t kWords[] = {0x0A5C, 0x0001};
    for (const auto& [shift, expected] : {std::pair{0, 0x5Cu + 1}, {2, 0x97u}, {8, 0x0Au}}) {
        std::uint32_t sum = 0;
        ScalarBlockSums(Luma16)({reinterpret_cast<const std::uint8_t*>(kWords), 0, 1, 2, 1, nullptr, shift},
                                &sum);
        EXPECT_EQ(sum, expected) << shift;
    }
}

// One pixel: its lowest bits, and all of them.
TEST(BlockSums, SixteenBitComponents) {
    const auto sumOf = [](PixelLayout layout, std::uint8_t low, std::uint8_t high) {
        const std::uint8_t pixel[] = {low, high};
        std::uint32_t sum = 0;
        ScalarBlockSums(layout)({pixel, 0, 1, 1, 1, nullptr}, &sum);
        return sum;
    };
    EXPECT_EQ(sumOf(Rgb565, 0x21, 0x08), 8u + 4 + 8);
    EXPECT_EQ(sumOf(Rgb565, 0xFF, 0xFF), 248u + 252 + 248);
    EXPECT_EQ(sumOf(Rgb555, 0x21, 0x04), 8u * 3);
    EXPECT_EQ(sumOf(Rgb555, 0xFF, 0xFF), 248u * 3);
}

/// Likewise over runs of many lengths, as many as there are bytes; random ones, and the greatest sums.
std::optional<std::string> FindFault(ByteSum sum, DifferenceSum differenceSum) {
    for (const std::size_t count : {0, 1, 15, 16, 17, 31, 32, 63, 64, 65, 130, 5401})
        for (const bool isGreatest : {false, true}) {
            auto a = RandomBytes(count, 1);
            auto b = RandomBytes(count, 2);
            if (isGreatest) {
                std::ranges::fill(a, std::uint8_t{255});
                std::ranges::fill(b, std::uint8_t{0});
            }
            if (sum(a.data(), count) != ScalarByteSum(a.data(), count))
                return "sum of " + std::to_string(count);
            for (const int clamp : {0, 1, 100, 127, 128, 255}) {
                const auto most = static_cast<std::uint8_t>(clamp);
                for (const auto& [from, to] : {std::pair{&a, &b}, {&b, &a}})
                    if (differenceSum(from->data(), to->data(), count, most) !=
                        ScalarDifferenceSum(from->data(), to->data(), count, most))
                        return "differences of " + std::to_string(count) + ", at most " +
                               std::to_string(clamp);
            }
        }
    return std::nullopt;
}

TEST(ByteSums, References) {
    constexpr std::uint8_t kA[] = {0, 10, 200, 255};
    constexpr std::uint8_t kB[] = {255, 7, 210, 255};
    EXPECT_EQ(ScalarByteSum(kA, 4), 465u);
    EXPECT_EQ(ScalarDifferenceSum(kA, kB, 4, 255), 255u + 3 + 10);
    EXPECT_EQ(ScalarDifferenceSum(kA, kB, 4, 5), 5u + 3 + 5);
}

TEST(ByteSums, EveryKernelEqualsTheReference) {
    for (const unsigned mask : kCpuMasks) {
        const unsigned cpu = mask & CpuFeatures();
        EXPECT_EQ(FindFault(SelectByteSum(cpu), SelectDifferenceSum(cpu)), std::nullopt) << "cpu " << mask;
    }
}

TEST(ByteSums, BrokenKernelsAreFound) {
    const ByteSum withoutLast = [](const std::uint8_t* bytes, std::size_t count) {
        return ScalarByteSum(bytes, count - count % 16);
    };
    EXPECT_NE(FindFault(withoutLast, ScalarDifferenceSum), std::nullopt);
    const DifferenceSum signedClamp = [](const std::uint8_t* a, const std::uint8_t* b, std::size_t count,
                                         std::uint8_t clamp) {
        return ScalarDifferenceSum(a, b, count, clamp < 128 ? clamp : std::uint8_t{0});
    };
    EXPECT_NE(FindFault(ScalarByteSum, signedClamp), std::nullopt);
}

} // namespace
