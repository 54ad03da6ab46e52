// The C interface on pictures of 1080p: a luma plane, its rows also at an odd distance, the same luma as
// YUY2, and a plain streaming sum over the bytes of each.
//
// `of_streaming` is the ratio of speeds to the sum (1.0: as fast), `to_yuy2` to the push of the same picture
// as YUY2.
#include "bench/Compare.h"
#include "engine/kernels/ByteSums.h"
#include "library/kxscenes.h"
#include "platform/CpuFeatures.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <random>
#include <vector>

namespace scenedetect {
namespace {

constexpr int kWidth = 1920;
constexpr int kHeight = 1080;

struct Stream {
    Stream(std::int32_t format, int stride) : bytes(static_cast<std::size_t>(stride) * kHeight) {
        std::mt19937 random(1);
        std::generate(bytes.begin(), bytes.end(), random);
        frame.struct_size = sizeof frame;
        frame.format = format;
        frame.width = kWidth;
        frame.height = kHeight;
        frame.stride = stride;
        frame.data = bytes.data();
        if (kxscenes_create(nullptr, &detector) != KXSCENES_OK)
            std::abort();
    }
    ~Stream() { kxscenes_destroy(detector); }
    Stream(const Stream&) = delete;
    Stream& operator=(const Stream&) = delete;

    void Push() {
        if (kxscenes_push(detector, &frame) != KXSCENES_OK)
            std::abort();
    }
    void Sum() { benchmark::DoNotOptimize(SelectByteSum(CpuFeatures())(bytes.data(), bytes.size())); }

    std::vector<std::uint8_t> bytes;
    kxscenes_frame frame{};
    kxscenes_detector* detector = nullptr;
};

void AgainstStreaming(benchmark::State& state, std::int32_t format, int stride) {
    Stream stream(format, stride);
    state.counters["of_streaming"] = Compare(
        state, [&] { stream.Push(); }, [&] { stream.Sum(); });
}

void AgainstYuy2(benchmark::State& state) {
    Stream luma(KXSCENES_LUMA8, kWidth);
    Stream yuy2(KXSCENES_YUY2, 2 * kWidth);
    state.counters["to_yuy2"] = Compare(
        state, [&] { luma.Push(); }, [&] { yuy2.Push(); });
}

BENCHMARK_CAPTURE(AgainstStreaming, luma, KXSCENES_LUMA8, kWidth)->UseManualTime();
BENCHMARK_CAPTURE(AgainstStreaming, luma_odd_stride, KXSCENES_LUMA8, kWidth + 13)->UseManualTime();
BENCHMARK_CAPTURE(AgainstStreaming, luma16, KXSCENES_LUMA16, 2 * kWidth)->UseManualTime();
BENCHMARK_CAPTURE(AgainstStreaming, yuy2, KXSCENES_YUY2, 2 * kWidth)->UseManualTime();
BENCHMARK(AgainstYuy2)->UseManualTime();

} // namespace
} // namespace scenedetect

BENCHMARK_MAIN();
