// The boxes that MP4 and MOV files are made of, and the numbers in them, in memory.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

namespace scenedetect {

struct Mp4Box {
    std::uint32_t type = 0;      ///< four characters, the first the highest byte
    std::size_t headerBytes = 0; ///< 8, or 16 with a 64-bit size
    std::uint64_t bodyBytes = 0; ///< as the header says, which may be more than there are
};

[[nodiscard]] constexpr std::uint32_t Mp4Type(const char (&name)[5]) {
    std::uint32_t type = 0;
    for (int i = 0; i < 4; ++i)
        type = type << 8 | static_cast<std::uint8_t>(name[i]);
    return type;
}

/// A big-endian number of 4 or 8 bytes; none where it does not lie within the bytes.
[[nodiscard]] std::optional<std::uint64_t> ReadMp4Number(std::span<const std::uint8_t> bytes,
                                                         std::size_t offset, std::size_t size);
/// Puts it there; false, and nothing is written, where it does not lie within the bytes or needs more of
/// them.
[[nodiscard]] bool WriteMp4Number(std::span<std::uint8_t> bytes, std::size_t offset, std::size_t size,
                                  std::uint64_t number);

/// Reads the header of a box at the beginning of the bytes, of which `left` are in its parent or the file;
/// none when it is not whole or the box does not fit in them.
[[nodiscard]] std::optional<Mp4Box> ReadMp4Box(std::span<const std::uint8_t> bytes, std::uint64_t left);

/// Calls `call(body)` for each box of this type among the children, which are all of the bytes.
template <typename Call>
void ForEachMp4Box(std::span<std::uint8_t> children, std::uint32_t type, Call call) {
    while (const auto box = ReadMp4Box(children, children.size())) {
        const auto bodyBytes = static_cast<std::size_t>(box->bodyBytes);
        if (box->type == type)
            call(children.subspan(box->headerBytes, bodyBytes));
        children = children.subspan(box->headerBytes + bodyBytes);
    }
}

} // namespace scenedetect
