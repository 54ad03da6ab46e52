#include "products/muxing/Mp4Edits.h"
#include "products/muxing/Mp4Boxes.h"
#include "tests/Testing.h"

namespace {

using Bytes = std::vector<std::uint8_t>;

Bytes Number(std::uint64_t number, std::size_t size) {
    Bytes bytes(size);
    (void)WriteMp4Number(bytes, 0, size, number);
    return bytes;
}

Bytes Box(const char (&type)[5], const std::vector<Bytes>& parts, bool isLong = false) {
    Bytes body;
    for (const Bytes& part : parts)
        body.insert(body.end(), part.begin(), part.end());
    Bytes box;
    const auto add = [&box](const Bytes& bytes) { box.insert(box.end(), bytes.begin(), bytes.end()); };
    add(Number(isLong ? 1 : body.size() + 8, 4));
    add(Number(Mp4Type(type), 4));
    if (isLong)
        add(Number(body.size() + 16, 8));
    add(body);
    return box;
}

// A movie in milliseconds, whose tracks have edits of these lengths.
Bytes Movie(int version, bool isLong, const std::vector<std::vector<std::uint64_t>>& tracks) {
    const std::size_t size = version == 1 ? 8 : 4;
    const Bytes start = {static_cast<std::uint8_t>(version), 0, 0, 0};
    const Bytes time = Number(0, size);
    Bytes movie = Box("mvhd", {start, time, time, Number(1000, 4), Number(9999, size), Number(7, 4)});
    for (const auto& lengths : tracks) {
        std::vector<Bytes> edits = {start, Number(lengths.size(), 4)};
        for (const std::uint64_t length : lengths)
            edits.insert(edits.end(), {Number(length, size), time, Number(0x10000, 4)});
        const Bytes track =
            Box("trak", {Box("tkhd", {start, time, time, Number(1, 4), Number(0, 4), Number(9999, size)}),
                         Box("free", {{1, 2, 3}}), Box("edts", {Box("elst", edits, isLong)})});
        movie.insert(movie.end(), track.begin(), track.end());
    }
    return movie;
}

// At 1.5 s: the second edit of the first track is shortened, the other track ends before.
TEST(Mp4Edits, TracksEndAtTheirLastEdit) {
    for (const auto& [version, isLong] : {std::pair(0, false), std::pair(1, false), std::pair(0, true)}) {
        Bytes movie = Movie(version, isLong, {{200, 1400}, {1100}});
        Bytes expected = Movie(version, isLong, {{200, 1300}, {1100}});
        const std::size_t size = version == 1 ? 8 : 4;
        const auto setLast = [size](std::span<std::uint8_t> body, std::size_t offset, std::uint64_t time) {
            EXPECT_TRUE(WriteMp4Number(body, offset + 2 * size, size, time));
        };
        std::uint64_t length = 1500;
        ForEachMp4Box(expected, Mp4Type("mvhd"), [&](auto body) { setLast(body, 8, length); });
        ForEachMp4Box(expected, Mp4Type("trak"), [&](auto track) {
            ForEachMp4Box(track, Mp4Type("tkhd"), [&](auto body) { setLast(body, 12, length); });
            length = 1100;
        });
        EXPECT_TRUE(EndEditsAt(movie, 36, {1, 24}));
        EXPECT_EQ(movie, expected) << version << isLong;
    }
}

TEST(Mp4Edits, BoxesThatMakeNoSenseAreRefused) {
    const Bytes whole = Movie(0, false, {{200, 1400}});
    for (std::size_t size = 0; size < whole.size(); ++size) {
        Bytes cut(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size));
        const bool isWhole = size >= Movie(0, false, {}).size(); // but for a track that is not
        EXPECT_EQ(EndEditsAt(cut, 36, {1, 24}), isWhole) << size;
    }
    Bytes wild = whole;
    wild[wild.size() - 2 * 12 - 4] = 0x7F; // the number of edits
    EXPECT_FALSE(EndEditsAt(wild, 36, {1, 24}));
}

} // namespace
