// Bitmap files: a 14-byte file header, then the Dib's header block, then its pixels.
#include "engine/BitmapHeader.h"
#include "engine/Dib.h"
#include "platform/File.h"
#include "support/DebugLog.h"

#include <algorithm>
#include <array>
#include <limits>

namespace scenedetect {
namespace {

constexpr WORD kBitmapType = 0x4D42; // "BM"

/// Writes `size` bytes of a block of which `existing` exist; the rest are zeros.
bool WriteBlock(File& file, const void* block, std::int64_t size, std::size_t existing) {
    const auto wanted = static_cast<std::size_t>(size);
    std::size_t written = std::min(wanted, existing);
    if (written != 0 && !file.Write(block, written))
        return false;
    constexpr std::array<std::uint8_t, 4096> kZeros{};
    while (written < wanted) {
        const std::size_t bytes = std::min(wanted - written, kZeros.size());
        if (!file.Write(kZeros.data(), bytes))
            return false;
        written += bytes;
    }
    return true;
}

} // namespace

bool Dib::LoadHeader(File& file) {
    BITMAPFILEHEADER fileHeader;
    if (file.Read(&fileHeader, sizeof fileHeader) != sizeof fileHeader) {
        DebugPrint(L"Dib::LoadHeader can't read file_header\n");
        return false;
    }
    return fileHeader.bfType == kBitmapType;
}

bool Dib::SkipInFile(File& file) {
    BITMAPINFOHEADER header;
    if (!LoadHeader(file) || file.Read(&header, sizeof header) != sizeof header)
        return false;
    const std::int64_t rest = HeaderSize(header) + BitsSize(header) - std::int64_t{sizeof header};
    return rest >= 0 && file.SeekForward(rest);
}

bool Dib::WriteToFile(File& file) {
    if (!IsValid())
        return false;
    const std::int64_t headerSize = GetHeaderSize();
    const std::int64_t bitsSize = GetBitsSize();
    const std::int64_t offset = headerSize + std::int64_t{sizeof(BITMAPFILEHEADER)};
    if (offset + bitsSize > std::numeric_limits<DWORD>::max())
        return false;
    BITMAPFILEHEADER fileHeader{};
    fileHeader.bfType = kBitmapType;
    fileHeader.bfSize = static_cast<DWORD>(offset + bitsSize);
    fileHeader.bfOffBits = static_cast<DWORD>(offset);
    return file.Write(&fileHeader, sizeof fileHeader) && WriteBlock(file, info, headerSize, infoExtent) &&
           WriteBlock(file, bits, bitsSize, bitsExtent);
}

bool Dib::WriteToPath(const std::wstring& path) {
    File file;
    if (!file.Open(path, File::Mode::Write))
        return false;
    const bool written = WriteToFile(file);
    return file.Close() && written;
}

} // namespace scenedetect
