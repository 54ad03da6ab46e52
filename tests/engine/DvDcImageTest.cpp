#include "engine/DvDcImage.h"
#include "tests/Testing.h"

namespace {

using Bytes = std::vector<std::uint8_t>;

TEST(DvDcImage, Sizes) {
    const auto expect = [](int mode, bool isPal, int width, int height) {
        const auto image = DvDcImage().Create(mode, isPal, 1, {});
        EXPECT_EQ(std::pair(image->width, image->height), std::pair(width, height));
        EXPECT_EQ(image->pixels, nullptr);
    };
    for (const int mode : {0, 1}) {
        expect(mode, true, 90, 72);
        expect(mode, false, 90, 60);
    }
    expect(2, true, 22, 18);
    expect(2, false, 22, 15);
}

struct Request {
    int mode;
    bool isPal;
    int variant;
    std::size_t bytes;
};

TEST(DvDcImage, FramesThatCanBeRead) {
    const DvDcImage images;
    const Bytes lowest(144000, 128);
    const Bytes highest(144000, 127);
    const auto create = [&](const Request& request, const Bytes& frame) {
        return images.Create(request.mode, request.isPal, request.variant,
                             std::span(frame).first(request.bytes));
    };
    // 16 levels of 255 in a sample, which variant 0 of the 625-line picture divides by 4 only: 1020 in eight
    // bits.
    for (const auto& [request, most] : {std::pair{Request{2, true, 1, 144000}, 255},
                                        {{2, false, 1, 120000}, 255},
                                        {{2, true, 0, 12 * 149 * 80}, 252},
                                        {{2, false, 0, 10 * 149 * 80}, 255}})
        for (const auto& [frame, level] : {std::pair{&lowest, 0}, {&highest, most}}) {
            const auto image = create(request, *frame);
            ASSERT_NE(image, nullptr);
            EXPECT_EQ(reinterpret_cast<std::uintptr_t>(image->pixels) % 32, 0u);
            const int count = (request.isPal ? 23 : 22) * image->height; // samples, with those too many
            EXPECT_EQ(std::count(image->pixels, image->pixels + count, level), count);
        }
    for (const Request& request : {Request{2, true, 1, 143999},
                                   {2, false, 1, 119999},
                                   {2, false, 0, 10 * 149 * 80 - 1},
                                   {2, false, 1, 0},
                                   {1, true, 1, 144000},
                                   {3, true, 1, 144000},
                                   {2, true, 2, 144000}})
        EXPECT_EQ(create(request, lowest), nullptr)
            << request.mode << ' ' << request.variant << ' ' << request.bytes;
}

} // namespace
