#include "engine/Dib.h"

#include "engine/BitmapHeader.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <utility>

namespace scenedetect {
namespace {

constexpr std::int64_t kHeaderBytes = sizeof(BITMAPINFOHEADER);

/// Header blocks hold a whole header, even if it calls itself shorter.
std::int64_t HeaderBlockBytes(std::int64_t announced) {
    return std::max(announced, kHeaderBytes);
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
    AllocateInfo(header->biSize);
    if (info == nullptr)
        return false;
    CopyExisting(info, header, infoExtent, headerBytes);
    info->biClrUsed = 0;
    info->biClrImportant = 0;
    AllocateBits(info->biSizeImage);
    return bits != nullptr;
}

void Dib::OwnInfo(void* block, std::int64_t bytes) {
    info = static_cast<BITMAPINFOHEADER*>(block);
    infoExtent = block != nullptr ? static_cast<std::size_t>(bytes) : 0;
    ownsInfo = true;
}

void Dib::AllocateInfo(std::int64_t announced) {
    const std::int64_t bytes = HeaderBlockBytes(announced);
    OwnInfo(AllocateBlock(bytes), bytes);
}

void Dib::AllocateBits(std::int64_t bytes) {
    bits = static_cast<std::uint8_t*>(AllocateBlock(bytes));
    bitsExtent = bits != nullptr ? static_cast<std::size_t>(bytes) : 0;
    ownsBits = true;
}

// A block with the header block at its start and the pixels after it. Those of a header that calls itself
// shorter than it is begin within it.
void Dib::OwnWhole(std::uint8_t* block, std::int64_t headerSize, std::int64_t bitsSize) {
    OwnInfo(block, HeaderBlockBytes(headerSize));
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
    bits = pixels;
    bitsExtent = pixels != nullptr ? pixelBytes : 0;
    if (header == nullptr || headerBytes < kHeaderBytes)
        return;
    info = const_cast<BITMAPINFOHEADER*>(header);
    infoExtent = headerBytes;
    const std::int64_t rest = static_cast<std::int64_t>(headerBytes) - GetHeaderSize();
    if (pixels == nullptr && rest >= 0) {
        bits = reinterpret_cast<std::uint8_t*>(info) + GetHeaderSize();
        bitsExtent = static_cast<std::size_t>(rest);
    }
}

bool Dib::Create(std::int32_t width, std::int32_t height, std::int32_t bitCount, bool usePaletteIndices) {
    constexpr std::int64_t kMostPixels = 8 * kMostBlockBytes; // at one bit each
    Release();
    const std::int64_t pixels = std::int64_t{width} * height;
    if (width < 0 || height < 0 || pixels > kMostPixels || bitCount < 0 ||
        bitCount > std::numeric_limits<WORD>::max())
        return false;
    const std::int64_t imageBytes = pixels * bitCount / 8;
    if (imageBytes > kMostBlockBytes)
        return false;

    BITMAPINFOHEADER header{};
    header.biSize = kHeaderBytes;
    header.biWidth = width;
    header.biHeight = height;
    header.biPlanes = 1;
    header.biBitCount = static_cast<WORD>(bitCount);
    header.biCompression = BI_RGB;
    // Deliberate: without row padding, though rows are addressed with it.
    header.biSizeImage = static_cast<DWORD>(imageBytes);
    const std::int64_t headerSize = HeaderSize(header);
    const std::int64_t bitsSize = BitsSize(header);
    auto* block = static_cast<std::uint8_t*>(AllocateBlock(headerSize + bitsSize));
    if (block == nullptr)
        return false;
    OwnWhole(block, headerSize, bitsSize);
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

// Fills an empty `copy` with blocks of these sizes; false when there is nothing to copy or memory runs out.
bool Dib::CopyBlocks(std::int64_t headerBytes, std::int64_t pixelBytes, Dib& copy) const {
    if (info == nullptr)
        return false;
    copy.AllocateInfo(headerBytes);
    copy.AllocateBits(pixelBytes);
    if (!copy.IsValid())
        return false;
    CopyExisting(copy.info, info, copy.infoExtent, infoExtent);
    CopyExisting(copy.bits, bits, copy.bitsExtent, bitsExtent);
    return true;
}

bool Dib::CopyTo(Dib& target) const {
    Dib copy;
    if (!CopyBlocks(GetHeaderSize(), GetBitsSize(), copy))
        return false;
    // Deliberate: what the target held is overwritten, not freed.
    target.info = std::exchange(copy.info, nullptr);
    target.infoExtent = copy.infoExtent;
    target.bits = std::exchange(copy.bits, nullptr);
    target.bitsExtent = copy.bitsExtent;
    target.ownsInfo = target.ownsBits = true;
    return true;
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
