#include "hosts/graph/OpenSource.h"

#include "hosts/graph/OwnSource.h"
#include "hosts/graph/SystemSource.h"
#include "reading/base/HostError.h"
#include "reading/readers/AviReader.h"
#include "reading/readers/PlainPictures.h"

#include <cstdint>
#include <string>
#include <utility>

namespace scenedetect {
namespace {

constexpr int kThreads = 1; // the source has one of its own

// None where the host has to read the file. Splitters of some systems know no pictures with a colour table,
// turn those over that begin with the top row, and pad the rows of planes.
std::unique_ptr<GraphSource> TrySystemSource(IGraphBuilder& graph, const std::string& path,
                                             const std::atomic<bool>& stop) {
    StreamInput file(path, stop);
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
    auto file = std::make_shared<StreamInput>(path, stop);
    const bool isAvi = AviReader::IsAvi(BeginOf(*file, kDifFrameBytes625));
    if (!isAvi && options.source == SourceKind::System)
        throw HostError(path + ": --source system reads AVI files only");
    if (options.source == SourceKind::System)
        return std::make_unique<SystemSource>(graph, path);
    if (isAvi && options.source == SourceKind::Automatic)
        if (auto source = TrySystemSource(graph, path, stop))
            return source;
    auto pictures = OpenPlainPictures(std::move(file), DamageLog(console, path), kThreads);
    if (!pictures)
        throw HostError(path + ": neither an AVI file nor a DV stream");
    return std::make_unique<OwnSource>(graph, std::move(pictures), options, stop);
}

} // namespace scenedetect
