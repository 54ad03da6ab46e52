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
        }
    } catch (const HostError&) {
        // no frame at all
    }
    return outcome;
}

} // namespace scenedetect::testing_support
