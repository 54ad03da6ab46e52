// The DC image against pictures that FFmpeg has encoded, and its own decoding of them. Wine has no FFmpeg to
// run.
#include "engine/DvDcImage.h"
#include "tests/TempFolder.h"
#include "tests/Testing.h"

#include <cmath>

namespace {

using Bytes = std::vector<std::uint8_t>;

constexpr int kWidth = 720;

/// The pixels of the macroblock at `row`, `column`: 16 x 16, or 32 x 8 with square ones at the right edge of
/// the 525-line picture.
std::vector<std::size_t> PixelsOf(bool isPal, int row, int column) {
    const bool square = isPal || column == 22;
    const int left = column * (isPal ? 16 : 32);
    const int top = isPal ? 16 * row : square ? row / 2 * 16 : 8 * row;
    std::vector<std::size_t> pixels;
    for (int y = top; y < top + (square ? 16 : 8); ++y)
        for (int x = left; x < left + (square ? 16 : 32); ++x)
            pixels.push_back(static_cast<std::size_t>(y) * kWidth + static_cast<std::size_t>(x));
    return pixels;
}

/// Enough for one bit of every macroblock's number in each frame.
constexpr int kFrames = 11;

/// In frame f a macroblock is bright if bit f of its number is set: no two are alike in all frames.
char LevelOf(int macroblock, int frame) {
    return static_cast<char>((macroblock >> frame & 1) != 0 ? 180 + macroblock % 13 : 60 + macroblock % 11);
}

void RunFfmpeg(const std::string& arguments) {
    ASSERT_EQ(std::system(("ffmpeg -nostdin -v fatal -y " + arguments).c_str()), 0) << arguments;
}

// The byte read is the upper eight of the DC coefficient's nine bits: mean level less 128. So every sample is
// the mean of 16 blocks, rounded down, except in the 625-line picture of variant 0: four times that, in eight
// bits. Pictures that FFmpeg encodes, and its own decoding of them, tell whether they are the right blocks.
class DcAgainstDecodedLuma : public TestWithParam<bool> {};

TEST_P(DcAgainstDecodedLuma, EverySampleIsTheMeanOfItsMacroblocks) {
    const bool isPal = GetParam();
    const int columns = isPal ? 45 : 23;
    const int macroblocks = columns * (isPal ? 36 : 60);
    const std::size_t lumaBytes = std::size_t{kWidth} * (isPal ? 576 : 480);
    const int sequences = isPal ? 12 : 10;

    std::string raw;
    for (int frame = 0; frame < kFrames; ++frame) {
        std::string luma(lumaBytes, '\0');
        for (int i = 0; i < macroblocks; ++i)
            for (const std::size_t pixel : PixelsOf(isPal, i / columns, i % columns))
                luma[pixel] = LevelOf(i, frame);          // of two rows that share a square, the lower one's
        raw += luma + std::string(lumaBytes / 2, '\x80'); // grey
    }
    const TempFolder folder;
    const auto quoted = [&folder](const char* name) { return '"' + (folder / name).string() + "\" "; };
    std::ofstream(folder / "in.yuv", std::ios::binary) << raw;
    RunFfmpeg(std::string("-f rawvideo ") +
              (isPal ? "-pix_fmt yuv420p -s 720x576 -r 25" : "-pix_fmt yuv411p -s 720x480 -r 30000/1001") +
              " -i " + quoted("in.yuv") + "-c:v dvvideo -f rawvideo " + quoted("out.dv"));
    RunFfmpeg("-f dv -i " + quoted("out.dv") + "-f rawvideo " + quoted("back.yuv"));
    const std::string capture = ReadWhole(folder / "out.dv");
    const std::string decoded = ReadWhole(folder / "back.yuv");
    ASSERT_EQ(capture.size(), static_cast<std::size_t>(kFrames * sequences * 12000));
    ASSERT_EQ(decoded.size(), raw.size());

    const DvDcImage images;
    for (int frame = 0; frame < kFrames; ++frame) {
        std::vector<double> means; // in the order of the table
        for (int i = 0; i < macroblocks; ++i) {
            const char* luma = decoded.data() + static_cast<std::size_t>(frame) * lumaBytes * 3 / 2;
            double sum = 0;
            const std::vector<std::size_t> pixels = PixelsOf(isPal, i / columns, i % columns);
            for (const std::size_t pixel : pixels)
                sum += static_cast<std::uint8_t>(luma[pixel]);
            means.push_back(sum / static_cast<double>(pixels.size()));
        }
        for (const int variant : {1, 0}) {
            Bytes bytes; // as they arrive, or without each sequence's header block
            for (int sequence = 0; sequence < sequences; ++sequence) {
                const char* at = capture.data() + std::ptrdiff_t{frame * sequences + sequence} * 12000;
                bytes.insert(bytes.end(), at + (variant == 0 ? 80 : 0), at + 12000);
            }
            const auto image = images.Create(2, isPal, variant, bytes);
            const int written = isPal ? 23 : 22; // one more than the 625-line picture is wide
            const double scale = isPal && variant == 0 ? 4 : 1;
            for (int y = 0; y < image->height; ++y)
                for (int x = 0; x < written; ++x) {
                    double expected = 0;
                    for (int i = 0; i < 4; ++i) {
                        const int row = isPal ? std::min(2 * y + i / 2, 34) : 4 * y + i * variant;
                        const int column = isPal ? std::min(2 * x + i % 2, 44) : x + i * (1 - variant);
                        expected += scale * means[static_cast<std::size_t>(row * columns + column)] / 4;
                    }
                    const double difference = image->pixels[y * written + x] - expected;
                    ASSERT_LE(std::abs(std::remainder(difference, 256)), scale)
                        << "variant " << variant << ", frame " << frame << ", sample " << x << ", " << y;
                }
        }
    }
}

INSTANTIATE_TEST_SUITE_P(, DcAgainstDecodedLuma, Bool(),
                         [](const auto& param) { return param.param ? "Lines625" : "Lines525"; });

} // namespace
