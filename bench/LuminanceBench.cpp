// The luminance readers against a plain streaming sum over the same bytes, and against their scalar forms.
//
// Every line times reader and reference in turn, on the same frame, and prints the ratio of their speeds as
// `of_streaming` (1.0: as fast as the streaming sum) or `to_scalar` (2.0: twice as fast as the scalar form).
#include "bench/Compare.h"
#include "engine/Dib.h"
#include "engine/Luminance.h"
#include "engine/kernels/ByteSums.h"
#include "platform/CpuFeatures.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdlib>
#include <random>
#include <string>
#include <vector>

namespace scenedetect {
namespace {

constexpr int kBlock = 8;
constexpr int kWidth = 1920;
constexpr int kHeight = 1080;

struct Format {
    const char* name;
    DWORD compression;
    WORD bitCount;
};

struct Frame {
    explicit Frame(const Format& format)
        : block(sizeof(BITMAPINFOHEADER) + 256 * sizeof(RGBQUAD)),
          pixels(static_cast<std::size_t>(kWidth) * kHeight * std::max<int>(format.bitCount, 8) / 8) {
        std::mt19937 random(1);
        std::generate(block.begin(), block.end(), random);
        std::generate(pixels.begin(), pixels.end(), random);
        BITMAPINFOHEADER header{};
        header.biSize = sizeof header;
        header.biWidth = kWidth;
        header.biHeight = kHeight;
        header.biPlanes = 1;
        header.biBitCount = format.bitCount;
        header.biCompression = format.compression;
        std::copy_n(reinterpret_cast<const std::uint8_t*>(&header), sizeof header, block.begin());
    }

    std::vector<std::uint8_t> block;
    std::vector<std::uint8_t> pixels;
    Dib dib{reinterpret_cast<const BITMAPINFOHEADER*>(block.data()), block.size(), pixels.data(),
            pixels.size()};
};

constexpr LuminanceGrid kGrid{kWidth / kBlock, kHeight / kBlock, kBlock};

/// The plain sum over the bytes that a reader walks: a planar one only the left part of every row.
std::uint64_t Stream(const Frame& frame, PixelLayout layout) {
    const ByteSum sum = SelectByteSum(CpuFeatures());
    if (layout != PixelLayout::Planar)
        return sum(frame.pixels.data(), frame.pixels.size());
    std::uint64_t total = 0;
    for (std::size_t row = 0; row + kWidth <= frame.pixels.size(); row += kWidth)
        total += sum(frame.pixels.data() + row, static_cast<std::size_t>(kGrid.height) * kBlock);
    return total;
}

void Read(const Frame& frame, PixelLayout layout, std::vector<std::uint8_t>& samples) {
    ReadLuminance(frame.dib, layout, kGrid, samples.data());
    benchmark::DoNotOptimize(samples.data());
    benchmark::ClobberMemory();
}

void AgainstStreaming(benchmark::State& state, const Format& format) {
    const Frame frame(format);
    const PixelLayout layout = *LayoutOf(frame.dib);
    std::vector<std::uint8_t> samples(static_cast<std::size_t>(kGrid.width) * kGrid.height);
    state.counters["of_streaming"] = Compare(
        state, [&] { Read(frame, layout, samples); },
        [&] { benchmark::DoNotOptimize(Stream(frame, layout)); });
}

void AgainstScalar(benchmark::State& state, const Format& format) {
    const Frame frame(format);
    const PixelLayout layout = *LayoutOf(frame.dib);
    std::vector<std::uint8_t> samples(static_cast<std::size_t>(kGrid.width) * kGrid.height);
    state.counters["to_scalar"] = Compare(
        state, [&] { Read(frame, layout, samples); },
        [&] {
            RestrictCpuFeatures(0);
            Read(frame, layout, samples);
            RestrictCpuFeatures(kCpuAll);
        });
}

constexpr Format kFastFormats[] = {
    {"yuy2", MAKEFOURCC('Y', 'U', 'Y', '2'), 16},
    {"uyvy", MAKEFOURCC('U', 'Y', 'V', 'Y'), 16},
    {"planar", MAKEFOURCC('I', '4', '2', '0'), 12},
    {"rgb24", BI_RGB, 24},
    {"rgb32", BI_RGB, 32},
};
constexpr Format kOtherFormats[] = {
    {"palette", BI_RGB, 8},
    {"rgb16", BI_RGB, 16},
};

template <typename Run>
void Register(const Format& format, const char* reference, Run run) {
    const std::string name = std::string(format.name) + "/" + reference;
    benchmark::RegisterBenchmark(name.c_str(), run, format)->UseManualTime();
}

void RegisterAll() {
    for (const Format& format : kFastFormats) {
        Register(format, "streaming", AgainstStreaming);
        Register(format, "scalar", AgainstScalar);
    }
    for (const Format& format : kOtherFormats)
        Register(format, "scalar", AgainstScalar);
}

} // namespace
} // namespace scenedetect

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return EXIT_FAILURE;
    scenedetect::RegisterAll();
    benchmark::RunSpecifiedBenchmarks();
}
