// A raw DV stream read to its end in each of the ways in which its bytes may come.
#pragma once

#include "reading/base/HostError.h"
#include "reading/readers/RawDvReader.h"
#include "tests/MemoryInput.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <vector>

namespace scenedetect::testing_support {

enum class Way { File, Pipe, TwoThreads };

struct Outcome {
    std::vector<FilePlace> places;
    std::vector<std::int64_t> sizes; // of the pictures there
    std::vector<Irregularity> told;
    bool isOfStream = true; // each picture is what the stream has at its place

    friend bool operator==(const Outcome&, const Outcome&) = default;
};

inline Outcome ReadAll(const std::vector<std::uint8_t>& stream, Way way, unsigned seed = 1) {
    static Console console("test", Verbosity::Quiet);
    Outcome outcome;
    const DamageLog damage(console, "memory",
                           [&outcome](const Irregularity& each) { outcome.told.push_back(each); });
    auto input = std::make_unique<MemoryInput>(stream);
    if (way == Way::Pipe)
        input->ComeInPieces(seed);
    try {
        RawDvReader reader(std::move(input), damage, way == Way::TwoThreads);
        Picture picture;
        while (reader.Next(picture)) {
            const std::span<const std::uint8_t> bytes = picture.Bytes();
            const auto offset = static_cast<std::size_t>(picture.place.byteOffset);
            const auto there = std::span(stream).subspan(std::min(offset, stream.size()));
            outcome.isOfStream = outcome.isOfStream && bytes.size() == picture.format.imageBytes &&
                                 bytes.size() <= there.size() &&
                                 std::memcmp(bytes.data(), there.data(), bytes.size()) == 0;
            outcome.places.push_back(picture.place);
            outcome.sizes.push_back(std::ssize(bytes));
        }
    } catch (const HostError&) {
        // no frame at all
    }
    return outcome;
}

/// Whether numbers, times and places go on, and what is told accounts for each number and byte between the
/// pictures of a stream of so many bytes: neither is anything left out in silence nor told of without cause.
inline bool IsAllTold(const Outcome& outcome, std::int64_t streamBytes) {
    std::int64_t frame = 0;
    std::int64_t end = 0;
    std::int64_t time = -1;
    bool isRight = true;
    auto told = outcome.told.begin();
    const auto require = [&isRight](bool condition) { isRight = isRight && condition; };
    const auto isGap = [](const Irregularity& each) { return each.kind != IrregularityKind::DamagedBlocks; };
    const auto nextGap = [&] { return told = std::find_if(told, outcome.told.end(), isGap); };
    // The last block of a frame may lack bytes, and what follows begin in it.
    const auto isEarly = [&end](std::int64_t offset) {
        return offset < end && offset > end - std::int64_t{kDifBlockBytes};
    };
    const auto pass = [&](std::int64_t to) {
        const Irregularity& gap = *told++;
        const bool isMissing =
            gap.kind == IrregularityKind::MissingBytes || gap.kind == IrregularityKind::MissingFrames;
        require(gap.frame == frame && (gap.byteOffset == end || isEarly(gap.byteOffset)));
        require(isMissing || gap.bytes == to - gap.byteOffset);
        require((gap.kind == IrregularityKind::UnknownBytes) == (gap.frames == 0));
        require((gap.kind == IrregularityKind::MissingFrames) == (to == gap.byteOffset));
        frame += gap.frames;
        end = to;
    };
    for (std::size_t i = 0; i < outcome.places.size(); ++i) {
        const FilePlace& place = outcome.places[i];
        if (nextGap() != outcome.told.end() && told->byteOffset <= place.byteOffset)
            pass(place.byteOffset);
        require(place.frame == frame && place.time > time);
        require(place.byteOffset == end || isEarly(place.byteOffset));
        frame = place.frame + 1;
        end = place.byteOffset + outcome.sizes[i];
        time = place.time;
    }
    while (nextGap() != outcome.told.end()) {
        const auto after = std::find_if(told + 1, outcome.told.end(), isGap);
        pass(after != outcome.told.end() ? after->byteOffset : streamBytes);
    }
    return isRight && end == streamBytes;
}

} // namespace scenedetect::testing_support
