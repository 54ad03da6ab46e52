#include "products/muxing/Mp4Boxes.h"

namespace scenedetect {

std::optional<std::uint64_t> ReadMp4Number(std::span<const std::uint8_t> bytes, std::size_t offset,
                                           std::size_t size) {
    if (offset > bytes.size() || bytes.size() - offset < size)
        return std::nullopt;
    std::uint64_t number = 0;
    for (const std::uint8_t byte : bytes.subspan(offset, size))
        number = number << 8 | byte;
    return number;
}

bool WriteMp4Number(std::span<std::uint8_t> bytes, std::size_t offset, std::size_t size,
                    std::uint64_t number) {
    if (offset > bytes.size() || bytes.size() - offset < size || (size < 8 && number >> (8 * size) != 0))
        return false;
    for (std::size_t i = size; i-- > 0; number >>= 8)
        bytes[offset + i] = static_cast<std::uint8_t>(number);
    return true;
}

std::optional<Mp4Box> ReadMp4Box(std::span<const std::uint8_t> bytes, std::uint64_t left) {
    auto size = ReadMp4Number(bytes, 0, 4);
    const auto type = ReadMp4Number(bytes, 4, 4);
    std::size_t headerBytes = 8;
    if (size == 1) {
        size = ReadMp4Number(bytes, headerBytes, 8);
        headerBytes = 16;
    } else if (size == 0) {
        size = left; // to the end
    }
    if (!size || !type || *size < headerBytes || *size > left)
        return std::nullopt;
    return Mp4Box{static_cast<std::uint32_t>(*type), headerBytes, *size - headerBytes};
}

} // namespace scenedetect
