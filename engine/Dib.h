// A device-independent bitmap: header, optional colour table and pixel rows, owned or borrowed.
#pragma once

#include <windows.h>

#include <wingdi.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>

namespace scenedetect {

class Archive;
class File;

/// One picture under a `BITMAPINFOHEADER`. A positive `biHeight` is a bottom-up picture, a negative one
/// top-down. A borrowing Dib must not outlive the memory that it looks at.
///
/// Headers come from outside and may announce more than there is. Every Dib therefore knows how many bytes
/// of header block and of pixel data really exist; bytes that do not exist read as 0 and are never written.
/// One thread at a time.
class Dib {
  public:
    Dib() = default;
    /// Borrows, see `Attach`.
    Dib(const BITMAPINFOHEADER* header, std::size_t headerBytes, std::uint8_t* pixels,
        std::size_t pixelBytes);
    /// Borrows what `other` holds; copies nothing.
    Dib(const Dib& other);
    Dib& operator=(const Dib&) = delete;

    virtual ~Dib();
    /// `LoadFromArchive` when the archive is loading; else writes the header block and the pixels in the
    /// sizes that the header announces. ArchiveException when the system refuses, or when together they
    /// exceed what loading takes.
    virtual void Serialize(Archive& archive);
    /// A picture of its own with the first `biSize` bytes of `header` (of which `headerBytes` exist),
    /// without its colour counts, and with `biSizeImage` bytes of pixels to be filled. False for a null
    /// header or when memory runs out.
    virtual bool CreateFromHeader(const BITMAPINFOHEADER* header, std::size_t headerBytes);
    /// Borrows a header block of `headerBytes` (the header and what follows it) and `pixelBytes` of pixels,
    /// which follow the header block when `pixels` is null. A block of less than 40 bytes is not a header.
    /// True when there is a header.
    virtual bool Attach(const BITMAPINFOHEADER* header, std::size_t headerBytes, std::uint8_t* pixels,
                        std::size_t pixelBytes);
    /// An uncompressed picture of its own, header and pixels in one block; the rows of its stated size are
    /// not padded. With `usePaletteIndices` and at most 8 bits the colour table holds 0, 1, 2, ... False
    /// for negative sizes and when memory runs out.
    virtual bool Create(std::int32_t width, std::int32_t height, std::int32_t bitCount,
                        bool usePaletteIndices);
    /// Reads a bitmap file's 14-byte file header; true when it is one.
    virtual bool LoadHeader(File& file);
    /// Moves `file` from the start of a bitmap to the byte after it, which lies within its 54 bytes of
    /// headers when those announce less. False when they can't be read or the system refuses.
    virtual bool SkipInFile(File& file);
    /// Writes a bitmap file's content; false when there is no picture, when it exceeds what loading takes, or
    /// when the system refuses.
    virtual bool WriteToFile(File& file);
    /// Writes a bitmap file.
    virtual bool WriteToPath(const std::wstring& path);
    /// A picture of its own with the content of a device's bitmap that is selected into no device context.
    /// False when there is no such bitmap (as where there is no such device) or memory runs out.
    virtual bool CreateFromBitmap(HBITMAP bitmap, HDC dc);
    /// A bitmap of the device with this content, for the caller to delete; null when there is no picture,
    /// when memory runs out and when the device refuses.
    [[nodiscard]] virtual HBITMAP CreateDDB(HDC dc) const;
    /// Fills the first `count` colours from `first` towards `last` (0x00BBGGRR) and the others with a light
    /// grey.
    virtual void SetColourRamp(std::int32_t count, COLORREF first, COLORREF last);
    /// Fills the colours with 8 levels of green, 8 of red and 4 of blue.
    virtual void SetColourCube();
    /// Frees what is owned and empties the object.
    virtual void Release();
    /// Moves everything out of `other`.
    virtual void TakeFrom(Dib& other);

    /// The header with what follows it; null when empty.
    [[nodiscard]] BITMAPINFOHEADER* GetInfo() const { return info; }
    /// The pixel data; null when empty.
    [[nodiscard]] std::uint8_t* GetBits() const { return bits; }
    /// Bytes that exist from `GetInfo` on.
    [[nodiscard]] std::size_t GetInfoExtent() const { return infoExtent; }
    /// Bytes that exist from `GetBits` on, whatever the header says.
    [[nodiscard]] std::size_t GetBitsExtent() const { return bitsExtent; }
    /// `biCompression`: `BI_RGB`, `BI_BITFIELDS` or a FourCC.
    [[nodiscard]] DWORD GetCompression() const { return info != nullptr ? info->biCompression : 0; }
    [[nodiscard]] WORD GetBitCount() const { return info != nullptr ? info->biBitCount : WORD{0}; }
    /// 40 bytes after the start of the header; check `GetInfoExtent` before reading, or use `GetColour`.
    [[nodiscard]] RGBQUAD* GetColourTable() const;
    [[nodiscard]] bool IsValid() const { return info != nullptr && bits != nullptr; }
    [[nodiscard]] bool HasGdiHandle() const { return gdiHandle != nullptr; }

    // What the header announces, see BitmapHeader.h; 0 when empty.
    [[nodiscard]] std::uint32_t GetColourCount() const;
    [[nodiscard]] std::int64_t GetHeaderSize() const;
    [[nodiscard]] std::int64_t GetBitsSize() const;
    [[nodiscard]] std::int64_t GetRowBytes() const;
    /// Whole bytes per pixel, 1 to 4. An unusual bit count is logged and counts as 1.
    [[nodiscard]] int PixelSize() const;

    /// Entry `index` of the colour table, announced or not; bytes that do not exist are 0.
    [[nodiscard]] RGBQUAD GetColour(std::uint32_t index) const;
    /// The `index`-th of the three bit-field masks (0 to 2), likewise.
    [[nodiscard]] DWORD GetMask(int index) const;
    /// Bytes from the start of the pixel data to row `y`, counted from the top of the picture. Needs a
    /// header.
    [[nodiscard]] std::int64_t RowOffset(std::int64_t y) const;
    /// Where pixel (`x`, `y`) of the picture lies, `y` counted from the top. Null, and logged, when the
    /// picture has no such pixel or its bytes do not all exist.
    [[nodiscard]] std::uint8_t* PixelAddress(std::int32_t x, std::int32_t y);
    [[nodiscard]] const std::uint8_t* PixelAddress(std::int32_t x, std::int32_t y) const;
    /// A pixel's bytes as a number: 3-byte pixels as 0xFFSSTT (first, second, third byte), others as the
    /// processor reads them. 0 for a pixel that the picture does not have.
    [[nodiscard]] std::uint32_t GetPixel(std::int32_t x, std::int32_t y) const;
    void SetPixel(std::int32_t x, std::int32_t y, std::uint32_t value);

    /// Gives `target` blocks of its own with the header block and the pixels, both in the sizes that the
    /// header announces; nothing else of it changes. False, and `target` as it was, when there is nothing to
    /// copy or memory runs out. `target` should be empty before: what it owned is not freed.
    [[nodiscard]] bool CopyTo(Dib& target) const;
    /// A new Dib made with `CreateFromHeader` and filled with `biSizeImage` bytes of `pixels`; null when
    /// memory runs out.
    [[nodiscard]] static std::unique_ptr<Dib> DuplicateFromHeader(const BITMAPINFOHEADER* header,
                                                                  std::size_t headerBytes,
                                                                  const std::uint8_t* pixels,
                                                                  std::size_t pixelBytes);
    /// Whether every colour is the grey of its own index.
    [[nodiscard]] bool HasGreyPalette() const;
    /// Reads a header of 40 bytes, the rest of its block and the pixels as `Serialize` or a bitmap file's
    /// writer left them, into a block of its own. ArchiveException (badIndex) when the archive ends too
    /// early; std::bad_alloc when memory runs out. The object is empty then. Takes no more memory than twice
    /// the bytes that are really there.
    void LoadFromArchive(Archive& archive);
    /// In pictures of at least 240 rows, repeats the rows of one field (0: even, 1: odd) over the other's.
    void DoubleField(std::int32_t field);

  private:
    [[nodiscard]] std::uint32_t ExistingColours() const;
    struct PixelPlace {
        std::int64_t offset;
        int size;
    };
    [[nodiscard]] std::optional<PixelPlace> FindPixel(std::int32_t x, std::int32_t y) const;
    [[nodiscard]] std::span<std::uint8_t> ExistingRow(std::int64_t y) const;
    void CopyRow(std::int64_t from, std::int64_t to);
    void Borrow(const BITMAPINFOHEADER* header, std::size_t headerBytes, std::uint8_t* pixels,
                std::size_t pixelBytes);
    void OwnInfo(void* block, std::int64_t bytes);
    void AllocateInfo(std::int64_t announced);
    void AllocateBits(std::int64_t bytes);
    void OwnWhole(std::uint8_t* block, std::int64_t headerSize, std::int64_t bitsSize);
    [[nodiscard]] bool CopyBlocks(std::int64_t headerBytes, std::int64_t pixelBytes, Dib& copy) const;
    /// Zeroed memory from the general heap; null when there is none, or for a size that only a broken header
    /// asks for.
    [[nodiscard]] static void* AllocateBlock(std::int64_t bytes);
    void Forget();

    BITMAPINFOHEADER* info = nullptr;
    std::uint8_t* bits = nullptr;
    bool ownsInfo = false; ///< and the pixels too when they lie in the same block
    bool ownsBits = false; ///< the pixels are a block of their own
    std::int32_t reserved = 0;
    bool paletteIndices = false; ///< the colour table holds 16-bit indices into a palette
    void* gdiHandle = nullptr;   ///< moved along by `TakeFrom`, never released here
    std::size_t infoExtent = 0;
    std::size_t bitsExtent = 0;
};

} // namespace scenedetect
