#include "engine/Dib.h"

#include "engine/BitmapHeader.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <limits>

namespace scenedetect {
namespace {

constexpr std::size_t kHeaderBytes = sizeof(BITMAPINFOHEADER);

/// Header blocks hold a whole header, even if it calls itself shorter.
std::size_t HeaderBlockBytes(std::int64_t announced) {
    return std::max(static_cast<std::size_t>(announced), kHeaderBytes);
}

void CopyExisting(void* target, const void* source, std::size_t wanted, std::size_t existing) {
    if (const std::size_t bytes = std::min(wanted, existing); bytes != 0)
        std::memcpy(target, source, bytes);
}

} // namespace

void* Dib::AllocateBlock(std::int64_t bytes) {
    if (bytes < 0 || bytes > kMostBlockBytes)
        return nullptr;
    return std::calloc(1, std::max<std::size_t>(static_cast<std::size_t>(bytes), 1));
}

Dib::Dib(const BITMAPINFOHEADER* header, std::size_t headerBytes, std::uint8_t* pixels,
         std::size_t pixelBytes) {
    Borrow(header, headerBytes, pixels, pixelBytes);
}

Dib::Dib(const Dib& other) {
    Borrow(other.info, other.infoExtent, other.bits, other.bitsExtent);
}

Dib::~Dib() {
    Dib::Release();
}

bool Dib::CreateFromHeader(const BITMAPINFOHEADER* header, std::size_t headerBytes) {
    if (header == nullptr || headerBytes < kHeaderBytes)
        return false;
    Release();
    const std::size_t blockBytes = HeaderBlockBytes(header->biSize);
    AdoptInfo(AllocateBlock(static_cast<std::int64_t>(blockBytes)), blockBytes);
    if (info == nullptr)
        return false;
    CopyExisting(info, header, blockBytes, headerBytes);
    info->biClrUsed = 0;
    info->biClrImportant = 0;
    AdoptBits(AllocateBlock(info->biSizeImage), info->biSizeImage);
    return bits != nullptr;
}

void Dib::AdoptInfo(void* block, std::size_t bytes) {
    info = static_cast<BITMAPINFOHEADER*>(block);
    infoExtent = block != nullptr ? bytes : 0;
    ownsInfo = block != nullptr;
}

void Dib::AdoptBits(void* block, std::size_t bytes) {
    bits = static_cast<std::uint8_t*>(block);
    bitsExtent = block != nullptr ? bytes : 0;
    ownsBits = block != nullptr;
}

// A block with the header block at its start and the pixels behind it.
void Dib::AdoptWhole(std::uint8_t* block, std::int64_t headerSize, std::int64_t bitsSize) {
    AdoptInfo(block, static_cast<std::size_t>(headerSize));
    bits = block + headerSize;
    bitsExtent = static_cast<std::size_t>(bitsSize);
}

bool Dib::Attach(const BITMAPINFOHEADER* header, std::size_t headerBytes, std::uint8_t* pixels,
                 std::size_t pixelBytes) {
    Release();
    Borrow(header, headerBytes, pixels, pixelBytes);
    return info != nullptr;
}

void Dib::Borrow(const BITMAPINFOHEADER* header, std::size_t headerBytes, std::uint8_t* pixels,
                 std::size_t pixelBytes) {
    if (header == nullptr || headerBytes < kHeaderBytes)
        return;
    info = const_cast<BITMAPINFOHEADER*>(header);
    infoExtent = headerBytes;
    bits = pixels;
    bitsExtent = pixels != nullptr ? pixelBytes : 0;
    const auto headerSize = static_cast<std::size_t>(GetHeaderSize());
    if (pixels == nullptr && headerSize <= headerBytes) {
        bits = reinterpret_cast<std::uint8_t*>(info) + headerSize;
        bitsExtent = headerBytes - headerSize;
    }
}

bool Dib::Create(std::int32_t width, std::int32_t height, std::int32_t bitCount, bool usePaletteIndices) {
    constexpr std::int64_t kMostPixels = std::int64_t{1} << 40;
    Release();
    const std::int64_t pixels = std::int64_t{width} * height;
    if (width < 0 || height < 0 || pixels > kMostPixels || bitCount < 0 ||
        bitCount > std::numeric_limits<WORD>::max())
        return false;
    const std::int64_t imageBytes = pixels * bitCount / 8;
    if (imageBytes > std::numeric_limits<std::int32_t>::max())
        return false;

    BITMAPINFOHEADER header{};
    header.biSize = kHeaderBytes;
    header.biWidth = width;
    header.biHeight = height;
    header.biPlanes = 1;
    header.biBitCount = static_cast<WORD>(bitCount);
    header.biCompression = BI_RGB;
    header.biSizeImage = static_cast<DWORD>(imageBytes);
    const std::int64_t headerSize = HeaderSize(header);
    const std::int64_t bitsSize = BitsSize(header);
    auto* block = static_cast<std::uint8_t*>(AllocateBlock(headerSize + bitsSize));
    if (block == nullptr)
        return false;
    AdoptWhole(block, headerSize, bitsSize);
    *info = header;

    if (bitCount < 9 && usePaletteIndices) {
        paletteIndices = true;
        auto* indices = reinterpret_cast<WORD*>(GetColourTable());
        for (std::uint32_t i = 0; i < GetColourCount(); ++i)
            indices[i] = static_cast<WORD>(i);
    }
    return true;
}

void Dib::Release() {
    if (ownsInfo)
        std::free(info);
    if (ownsBits)
        std::free(bits);
    Forget();
}

void Dib::TakeFrom(Dib& other) {
    Release();
    info = other.info;
    infoExtent = other.infoExtent;
    bits = other.bits;
    bitsExtent = other.bitsExtent;
    ownsInfo = other.ownsInfo;
    ownsBits = other.ownsBits;
    paletteIndices = other.paletteIndices;
    gdiHandle = other.gdiHandle;
    other.Forget();
}

void Dib::Forget() {
    info = nullptr;
    infoExtent = 0;
    bits = nullptr;
    bitsExtent = 0;
    ownsInfo = false;
    ownsBits = false;
    paletteIndices = false;
    reserved = 0;
    gdiHandle = nullptr;
}

bool Dib::CopyTo(Dib& target) const {
    Dib copy;
    if (info != nullptr) {
        const std::size_t headerBytes = HeaderBlockBytes(GetHeaderSize());
        const std::int64_t bitsSize = GetBitsSize();
        copy.AdoptInfo(AllocateBlock(static_cast<std::int64_t>(headerBytes)), headerBytes);
        copy.AdoptBits(AllocateBlock(bitsSize), static_cast<std::size_t>(bitsSize));
    }
    const bool complete = copy.IsValid();
    if (complete) {
        CopyExisting(copy.info, info, copy.infoExtent, infoExtent);
        CopyExisting(copy.bits, bits, copy.bitsExtent, bitsExtent);
        copy.paletteIndices = paletteIndices;
    } else {
        copy.Release();
    }
    // Deliberate: what the target held is overwritten, not freed.
    target.Forget();
    target.TakeFrom(copy);
    return complete;
}

std::unique_ptr<Dib> Dib::DuplicateFromHeader(const BITMAPINFOHEADER* header, std::size_t headerBytes,
                                              const std::uint8_t* pixels, std::size_t pixelBytes) {
    auto copy = std::make_unique<Dib>();
    if (!copy->CreateFromHeader(header, headerBytes))
        return nullptr;
    CopyExisting(copy->bits, pixels, copy->bitsExtent, pixels != nullptr ? pixelBytes : 0);
    return copy;
}

std::uint32_t Dib::GetColourCount() const {
    return info != nullptr ? ColourCount(*info) : 0;
}

std::int64_t Dib::GetHeaderSize() const {
    return info != nullptr ? HeaderSize(*info) : 0;
}

std::int64_t Dib::GetBitsSize() const {
    return info != nullptr ? BitsSize(*info) : 0;
}

std::int64_t Dib::GetRowBytes() const {
    return info != nullptr ? RowBytes(*info) : 0;
}

} // namespace scenedetect
