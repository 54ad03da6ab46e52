// Pictures under headers that announce anything: pixels, colour tables, copies and luminance grids.
#include "engine/BitmapHeader.h"
#include "engine/Detector.h"
#include "engine/Dib.h"
#include "engine/Luminance.h"
#include "fuzz/Input.h"
#include "platform/CpuFeatures.h"

using namespace scenedetect;
using fuzz::Require;

namespace {

// More would only measure how fast memory can be filled.
constexpr std::int64_t kLargestCopy = 1 << 20;
constexpr std::int32_t kMostRows = 4096;

void ReadAndWritePixels(Dib& picture, std::int32_t x, std::int32_t y, std::uint32_t value) {
    (void)picture.GetPixel(x, y);
    // What is written to pixels within the header changes that.
    const bool isApart = picture.GetHeaderSize() >= std::int64_t{sizeof(BITMAPINFOHEADER)};
    picture.SetPixel(x, y, value);
    if (!isApart || !picture.PixelAddress(x, y))
        return;
    const int bits = 8 * picture.PixelSize();
    Require(picture.GetPixel(x, y) == (bits == 32 ? value : value & ((1u << bits) - 1)));
}

void UseColours(Dib& picture, std::uint32_t value) {
    (void)picture.GetColour(value);
    (void)picture.GetMask(static_cast<int>(value % 5) - 1);
    (void)picture.HasGreyPalette();
    picture.SetColourRamp(static_cast<std::int32_t>(value), value, ~value);
    picture.SetColourCube();
}

void Copy(const Dib& picture) {
    if (!picture.IsValid() || picture.GetHeaderSize() > kLargestCopy || picture.GetBitsSize() > kLargestCopy)
        return;
    Dib copy;
    if (!picture.CopyTo(copy))
        return;
    Require(copy.GetBitsExtent() == static_cast<std::size_t>(picture.GetBitsSize()));
    for (std::size_t i = 0; i < copy.GetBitsExtent(); ++i)
        Require(copy.GetBits()[i] == (i < picture.GetBitsExtent() ? picture.GetBits()[i] : 0));
}

// With every set of kernels the same bytes, none of them outside the slot.
void ExtractWith(const Dib& picture, const LuminanceGrid& grid) {
    Detector detector;
    detector.SetGridWidth(grid.width);
    detector.SetGridHeight(grid.height);
    detector.SetBlockSize(grid.blockSize);
    detector.Reset();
    const auto extract = [&](unsigned features) {
        RestrictCpuFeatures(features);
        std::vector<std::uint8_t> slot(static_cast<std::size_t>(detector.GetSampleCount()));
        detector.ExtractLuminance(picture, slot.data());
        return slot;
    };
    const auto scalar = extract(0);
    Require(extract(kCpuSse2) == scalar);
    Require(extract(kCpuAll) == scalar);
}

void Use(Dib& picture, const LuminanceGrid& grid, std::int32_t x, std::int32_t y, std::uint32_t value) {
    ExtractWith(picture, grid);
    Copy(picture);
    if (!picture.IsValid())
        return;
    ReadAndWritePixels(picture, x, y, value);
    if (RowCount(*picture.GetInfo()) <= kMostRows)
        picture.DoubleField(value & 1);
    UseColours(picture, value);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::Input input(data, size);
    const std::size_t headerBytes = input.Take<std::uint16_t>() % 2048;
    const std::size_t pixelBytes = input.Take<std::uint16_t>();
    LuminanceGrid grid{};
    grid.width = input.Take<std::uint8_t>() % 65;
    grid.height = input.Take<std::uint8_t>() % 65;
    grid.blockSize = input.Take<std::int8_t>() % 33;
    const auto x = input.Take<std::int16_t>();
    const auto y = input.Take<std::int16_t>();
    const auto value = input.Take<std::uint32_t>();
    std::vector<std::uint8_t> header = input.Repeated(headerBytes);
    std::vector<std::uint8_t> pixels = input.Repeated(pixelBytes);

    // Pixels of their own, and those that follow the header.
    for (std::uint8_t* bits : {pixels.data(), static_cast<std::uint8_t*>(nullptr)}) {
        Dib picture(reinterpret_cast<const BITMAPINFOHEADER*>(header.data()), headerBytes, bits, pixelBytes);
        Require(!picture.IsValid() || headerBytes >= sizeof(BITMAPINFOHEADER));
        Use(picture, grid, x, y, value);
    }
    return 0;
}
