// Bitmap headers and Dibs for tests.
#pragma once

#include "engine/Dib.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <random>
#include <utility>
#include <vector>

namespace scenedetect::testing_support {

inline BITMAPINFOHEADER MakeHeader(std::int32_t width, std::int32_t height, int bitCount,
                                   DWORD compression = BI_RGB) {
    BITMAPINFOHEADER header{};
    header.biSize = sizeof header;
    header.biWidth = width;
    header.biHeight = height;
    header.biPlanes = 1;
    header.biBitCount = static_cast<WORD>(bitCount);
    header.biCompression = compression;
    return header;
}

inline std::vector<std::uint8_t> RandomBytes(std::size_t count, unsigned seed) {
    std::mt19937 random(seed);
    std::vector<std::uint8_t> bytes(count);
    for (std::uint8_t& byte : bytes)
        byte = static_cast<std::uint8_t>(random());
    return bytes;
}

/// A borrowing Dib whose header block and pixels are exactly as long as they are told.
struct Bitmap {
    Bitmap(const BITMAPINFOHEADER& header, std::vector<std::uint8_t> pixelBytes,
           const std::vector<std::uint8_t>& afterHeader = {})
        : block(sizeof header + afterHeader.size()), pixels(std::move(pixelBytes)) {
        pixels.reserve(1); // an address even when there are none
        std::memcpy(block.data(), &header, sizeof header);
        std::copy(afterHeader.begin(), afterHeader.end(), block.begin() + sizeof header);
        dib.Attach(reinterpret_cast<const BITMAPINFOHEADER*>(block.data()), block.size(), pixels.data(),
                   pixels.size());
    }

    std::vector<std::uint8_t> block;
    std::vector<std::uint8_t> pixels;
    Dib dib;
};

} // namespace scenedetect::testing_support
