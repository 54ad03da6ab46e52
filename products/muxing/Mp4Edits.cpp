#include "products/muxing/Mp4Edits.h"

#include "products/muxing/Mp4Boxes.h"
#include "reading/base/HostError.h"

extern "C" {
#include <libavutil/mathematics.h>
}

#include <algorithm>
#include <array>
#include <fstream>
#include <limits>
#include <optional>
#include <vector>

namespace scenedetect {
namespace {

using BoxBytes = std::span<std::uint8_t>;

// Version 1 of a box has 64-bit times and durations, version 0 32-bit ones.
std::size_t TimeBytes(BoxBytes body) {
    return !body.empty() && body[0] == 1 ? 8 : 4;
}

// Of mvhd and tkhd: after version and flags come two times, then four or eight bytes of other things.
struct Duration {
    std::size_t offset;
    std::size_t size;
};
Duration DurationOf(BoxBytes body, std::size_t otherBytes) {
    const std::size_t size = TimeBytes(body);
    return {4 + 2 * size + otherBytes, size};
}

// The length of the presentation of an edit list (elst), at most `limit`; none when it is not whole.
std::optional<std::uint64_t> ShortenLast(BoxBytes list, std::uint64_t limit) {
    constexpr std::size_t kEntries = 8;
    constexpr std::size_t kRateBytes = 4;
    const std::size_t size = TimeBytes(list);
    const std::size_t entryBytes = 2 * size + kRateBytes;
    const auto count = ReadMp4Number(list, 4, 4);
    if (!count || *count == 0 || *count > (list.size() - kEntries) / entryBytes)
        return std::nullopt;
    const std::size_t last = kEntries + (static_cast<std::size_t>(*count) - 1) * entryBytes;
    std::uint64_t before = 0;
    for (std::size_t entry = kEntries; entry < last; entry += entryBytes)
        before += ReadMp4Number(list, entry, size).value();
    const std::uint64_t length = ReadMp4Number(list, last, size).value();
    if (before >= limit || length <= limit - before) // a list of no length would mean all there is
        return before + length;
    return WriteMp4Number(list, last, size, limit - before) ? std::optional(limit) : std::nullopt;
}

} // namespace

bool EndEditsAt(BoxBytes movie, std::int64_t end, AVRational timeBase) {
    std::uint64_t movieLength = 0;
    bool isWhole = end > 0;
    BoxBytes header;
    ForEachMp4Box(movie, Mp4Type("mvhd"), [&](BoxBytes body) { header = body; });
    const Duration movieDuration = DurationOf(header, 4); // the timescale
    const auto timescale = ReadMp4Number(header, movieDuration.offset - 4, 4).value_or(0);
    if (timescale == 0 || timescale > std::numeric_limits<std::int32_t>::max() || !isWhole)
        return false;
    const auto limit =
        static_cast<std::uint64_t>(av_rescale_q(end, timeBase, AVRational{1, static_cast<int>(timescale)}));

    ForEachMp4Box(movie, Mp4Type("trak"), [&](BoxBytes track) {
        std::optional<std::uint64_t> length;
        ForEachMp4Box(track, Mp4Type("edts"), [&](BoxBytes edits) {
            ForEachMp4Box(edits, Mp4Type("elst"), [&](BoxBytes list) { length = ShortenLast(list, limit); });
        });
        ForEachMp4Box(track, Mp4Type("tkhd"), [&](BoxBytes trackHeader) {
            const auto [offset, size] = DurationOf(trackHeader, 8); // track number, reserved
            isWhole = isWhole && length && WriteMp4Number(trackHeader, offset, size, *length);
        });
        movieLength = std::max(movieLength, length.value_or(0));
    });
    return isWhole && WriteMp4Number(header, movieDuration.offset, movieDuration.size, movieLength);
}

void EndEditsAt(const OutputFile& file, std::int64_t end, AVRational timeBase) {
    std::fstream stream(file.WritingPath(), std::ios::binary | std::ios::in | std::ios::out);
    stream.seekg(0, std::ios::end);
    const auto fileBytes = static_cast<std::uint64_t>(stream.tellg());
    for (std::uint64_t offset = 0; stream && offset < fileBytes;) {
        std::array<std::uint8_t, 16> start{};
        const auto startBytes = std::min<std::uint64_t>(start.size(), fileBytes - offset);
        stream.seekg(static_cast<std::streamoff>(offset));
        stream.read(reinterpret_cast<char*>(start.data()), static_cast<std::streamsize>(startBytes));
        const auto box =
            ReadMp4Box(BoxBytes(start).first(static_cast<std::size_t>(startBytes)), fileBytes - offset);
        if (!box)
            break;
        offset += box->headerBytes;
        if (box->type != Mp4Type("moov")) {
            offset += box->bodyBytes;
            continue;
        }
        std::vector<std::uint8_t> movie(static_cast<std::size_t>(box->bodyBytes));
        const auto seek = static_cast<std::streamoff>(offset);
        const auto movieBytes = static_cast<std::streamsize>(movie.size());
        stream.seekg(seek).read(reinterpret_cast<char*>(movie.data()), movieBytes);
        if (stream && EndEditsAt(movie, end, timeBase) &&
            stream.seekp(seek).write(reinterpret_cast<const char*>(movie.data()), movieBytes).flush())
            return;
        break;
    }
    throw HostError(file.Path() + ": the edit lists that end it cannot be written");
}

} // namespace scenedetect
