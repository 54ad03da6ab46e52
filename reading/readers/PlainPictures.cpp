#include "reading/readers/PlainPictures.h"

#include "reading/dv/DvCheck.h"
#include "reading/readers/AviPictures.h"
#include "reading/readers/RawDvReader.h"

#include <algorithm>
#include <utility>

namespace scenedetect {
namespace {

bool IsDv50(std::span<const std::uint8_t> data) {
    const DvSystem system = VoteDvSystem(data).value_or(DvSystem::Lines525);
    return ProfileOfDvFrame(data.first(std::min(data.size(), DvFrameBytes(system))), system) ==
           DvProfile::Dv50;
}

} // namespace

std::vector<std::uint8_t> BeginOf(StreamInput& stream, std::size_t bytes) {
    std::vector<std::uint8_t> start(bytes);
    start.resize(stream.Read(start));
    stream.Rewind();
    return start;
}

bool BeginsAsRawDv(std::span<const std::uint8_t> start) {
    return IsDvFrameStart(start) && !IsDv50(start);
}

bool HoldsRawDv(std::span<const std::uint8_t> start) {
    return FindDvFrame(start, 0, kUnknownDvBytes).has_value();
}

std::unique_ptr<PictureReader> OpenRawDv(std::shared_ptr<StreamInput> stream, const DamageLog& damage,
                                         int threads) {
    stream->Rewind();
    stream->Settle();
    const bool hasThread = threads != 1 && ReadWindow::GainsByThread(*stream);
    return std::make_unique<RawDvReader>(std::move(stream), damage, hasThread);
}

std::unique_ptr<PictureReader> OpenPlainPictures(std::shared_ptr<StreamInput> stream, const DamageLog& damage,
                                                 int threads) {
    const auto start = BeginOf(*stream, kDifFrameBytes625);
    if (AviReader::IsAvi(start)) {
        stream->Settle();
        return std::make_unique<AviPictures>(std::move(stream), damage);
    }
    if (BeginsAsRawDv(start) ||
        (!IsDvFrameStart(start) && HoldsRawDv(BeginOf(*stream, kUnknownDvBytes + kDifFrameBytes625))))
        return OpenRawDv(std::move(stream), damage, threads);
    return nullptr;
}

} // namespace scenedetect
