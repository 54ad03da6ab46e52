#include "engine/DvDcImage.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

namespace scenedetect {
namespace {

using Bytes = std::vector<std::uint8_t>;

TEST(DvDcImage, Sizes) {
    const auto expect = [](int mode, bool isPal, int width, int height) {
        const auto image = DvDcImage().Create(mode, isPal, 1, {});
        EXPECT_EQ(std::pair(image->width, image->height), std::pair(width, height));
        EXPECT_EQ(image->pixels, nullptr);
    };
    expect(0, true, 90, 72);
    expect(1, false, 90, 60);
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
    const Bytes frame(144000, 128); // the lowest level
    const auto create = [&](const Request& request) {
        return images.Create(request.mode, request.isPal, request.variant,
                             std::span(frame).first(request.bytes));
    };
    for (const Request& request :
         {Request{2, true, 1, 144000}, {2, false, 1, 120000}, {2, true, 0, 12 * 149 * 80}}) {
        const auto image = create(request);
        ASSERT_NE(image, nullptr);
        EXPECT_EQ(reinterpret_cast<std::uintptr_t>(image->pixels) % 32, 0u);
        EXPECT_EQ(std::count(image->pixels, image->pixels + 22 * image->height, 0), 22 * image->height);
    }
    for (const Request& request : {Request{2, true, 1, 143999},
                                   {2, false, 1, 119999},
                                   {2, false, 0, 10 * 149 * 80 - 1},
                                   {2, false, 1, 0},
                                   {1, true, 1, 144000},
                                   {3, true, 1, 144000},
                                   {2, true, 2, 144000}})
        EXPECT_EQ(create(request), nullptr) << request.mode << ' ' << request.variant << ' ' << request.bytes;
}

} // namespace
} // namespace scenedetect
