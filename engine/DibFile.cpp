// Bitmap files and archives: the Dib's header block, then its pixels; in files after a file header of 14
// bytes.
#include "engine/BitmapHeader.h"
#include "engine/Dib.h"
#include "platform/File.h"
#include "support/Archive.h"
#include "support/DebugLog.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <new>
#include <optional>
#include <span>

namespace scenedetect {
namespace {

constexpr WORD kBitmapType = 0x4D42; // "BM"

/// Hands `size` bytes of a block of which `existing` exist to `write` (data, bytes), until that gives false;
/// the rest are zeros. No more than `kMostBlockBytes`.
template <typename Write>
bool WriteBlock(Write write, const void* block, std::int64_t size, std::size_t existing) {
    const auto wanted = static_cast<std::size_t>(size);
    std::size_t written = std::min(wanted, existing);
    if (written != 0 && !write(block, written))
        return false;
    constexpr std::array<std::uint8_t, 4096> kZeros{};
    while (written < wanted) {
        const std::size_t bytes = std::min(wanted - written, kZeros.size());
        if (!write(kZeros.data(), bytes))
            return false;
        written += bytes;
    }
    return true;
}

struct FreeBlock {
    void operator()(std::uint8_t* block) const { std::free(block); }
};
using Block = std::unique_ptr<std::uint8_t, FreeBlock>;

/// `start` and the bytes of an archive that follow it, `wanted` in all, in one block. It grows as they
/// arrive: a header that lies about its size costs no memory. Null where the archive ends too early;
/// std::bad_alloc when memory runs out.
Block ReadBlock(Archive& archive, std::span<const std::uint8_t> start, std::size_t wanted) {
    constexpr std::size_t kFirstBytes = std::size_t{1} << 20;
    Block block;
    std::size_t have = start.size();
    for (std::size_t room = std::min(wanted, kFirstBytes);; room = std::min(wanted, 2 * room)) {
        auto* grown = static_cast<std::uint8_t*>(std::realloc(block.get(), room));
        if (grown == nullptr)
            throw std::bad_alloc();
        static_cast<void>(block.release());
        block.reset(grown);
        if (have == start.size())
            std::copy(start.begin(), start.end(), grown);
        if (archive.Read(grown + have, room - have) != room - have)
            return nullptr;
        have = room;
        if (have == wanted)
            return block;
    }
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
    // Deliberate: a bitmap that announces less than its 40 bytes of header leads back into these.
    return file.SeekForward(HeaderSize(header) + BitsSize(header) - std::int64_t{sizeof header});
}

bool Dib::WriteToFile(File& file) {
    const std::optional<std::size_t> size = IsValid() ? StoredSize(*info) : std::nullopt;
    if (!size)
        return false;
    BITMAPFILEHEADER fileHeader{};
    fileHeader.bfType = kBitmapType;
    fileHeader.bfSize = static_cast<DWORD>(sizeof fileHeader + *size);
    fileHeader.bfOffBits = static_cast<DWORD>(sizeof fileHeader) + static_cast<DWORD>(GetHeaderSize());
    const auto write = [&file](const void* data, std::size_t bytes) { return file.Write(data, bytes); };
    return write(&fileHeader, sizeof fileHeader) && WriteBlock(write, info, GetHeaderSize(), infoExtent) &&
           WriteBlock(write, bits, GetBitsSize(), bitsExtent);
}

bool Dib::WriteToPath(const std::wstring& path) {
    File file;
    if (!file.Open(path, File::Mode::Write))
        return false;
    const bool written = WriteToFile(file);
    return file.Close() && written;
}

void Dib::Serialize(Archive& archive) {
    if (archive.IsLoading()) {
        LoadFromArchive(archive);
        return;
    }
    if (info == nullptr)
        return;
    if (!StoredSize(*info))
        throw ArchiveException(ArchiveException::genericException);
    const auto write = [&archive](const void* data, std::size_t bytes) {
        archive.Write(data, bytes);
        return true;
    };
    static_cast<void>(WriteBlock(write, info, GetHeaderSize(), infoExtent));
    static_cast<void>(WriteBlock(write, bits, GetBitsSize(), bitsExtent));
}

void Dib::LoadFromArchive(Archive& archive) {
    Release();
    std::array<std::uint8_t, sizeof(BITMAPINFOHEADER)> start{};
    if (archive.Read(start.data(), start.size()) != start.size())
        throw ArchiveException(ArchiveException::badIndex);
    BITMAPINFOHEADER header;
    std::memcpy(&header, start.data(), sizeof header);

    const std::optional<std::size_t> size = StoredSize(header);
    Block block;
    try {
        if (!size)
            throw std::bad_alloc();
        block = ReadBlock(archive, start, std::max(*size, start.size()));
    } catch (const std::bad_alloc&) {
        DebugPrint(L"Dib::LoadFromArchive: malloc failed\n");
        throw;
    }
    if (!block) {
        DebugPrint(L"Dib::LoadFromArchive can't read bits\n");
        throw ArchiveException(ArchiveException::badIndex);
    }
    OwnWhole(block.release(), HeaderSize(header), BitsSize(header));
}

} // namespace scenedetect
