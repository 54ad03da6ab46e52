#include "hosts/graph/OpenSource.h"

#include "hosts/graph/OwnSource.h"
#include "hosts/graph/SystemSource.h"
#include "reading/base/HostError.h"
#include "reading/dv/DvCheck.h"
#include "reading/readers/AviPictures.h"
#include "reading/readers/FileInput.h"
#include "reading/readers/RawDvReader.h"

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace scenedetect {
namespace {

// Unknown bytes in front of a DV stream are stepped over, up to as many as two frames have.
constexpr std::size_t kForeignBytes = 2 * kDifFrameBytes625;
constexpr std::size_t kProbeBytes = kForeignBytes + kDifFrameBytes625;

// None where the host has to read the file. Splitters of some systems know no pictures with a colour table,
// turn those over that begin with the top row, and pad the rows of planes.
std::unique_ptr<GraphSource> TrySystemSource(IGraphBuilder& graph, const std::string& path,
                                             const std::atomic<bool>& stop) {
    FileInput file(path, stop);
    const auto format = UncompressedFormat(AviReader(file).Video().format);
    if (!format || !format->colours.empty() || format->height < 0)
        return nullptr;
    try {
        auto source = std::make_unique<SystemSource>(graph, path);
        const std::uint32_t bytes = source->PictureBytes();
        return bytes == 0 || bytes == format->imageBytes ? std::move(source) : nullptr;
    } catch (const HostError&) {
        return nullptr;
    }
}

} // namespace

std::unique_ptr<GraphSource> OpenSource(IGraphBuilder& graph, const GraphOptions& options,
                                        const std::atomic<bool>& stop, Console& console) {
    const std::string& path = options.inputs.front();
    auto file = std::make_unique<FileInput>(path, stop);
    std::vector<std::uint8_t> start(kProbeBytes);
    start.resize(file->Read(start));
    file = std::make_unique<FileInput>(path, stop);
    const DamageLog damage(console, path);

    if (AviReader::IsAvi(start)) {
        if (options.source == SourceKind::System)
            return std::make_unique<SystemSource>(graph, path);
        if (options.source == SourceKind::Automatic)
            if (auto source = TrySystemSource(graph, path, stop))
                return source;
        return std::make_unique<OwnSource>(graph, std::make_unique<AviPictures>(std::move(file), damage),
                                           options, stop);
    }
    if (!FindDvFrame(start, 0, kForeignBytes))
        throw HostError(path + ": neither an AVI file nor a DV stream");
    if (options.source == SourceKind::System)
        throw HostError(path + ": --source system reads AVI files only");
    return std::make_unique<OwnSource>(graph, std::make_unique<RawDvReader>(std::move(file), damage), options,
                                       stop);
}

} // namespace scenedetect
