// Lists of scenes: refused in one line, or read so that their scenes follow each other.
#include "fuzz/Input.h"
#include "products/listed/ListedScenes.h"
#include "reading/base/HostError.h"

using namespace scenedetect;
using fuzz::Require;

namespace {

void Follow(const SceneList& list, const std::optional<SourceTimecode>& first) {
    constexpr int kFrames = 100;
    const TimeScale scale{{1, 1'000'000}, {30000, 1001}};
    ListedScenes listed(list, scale, first);
    std::size_t begun = 0;
    FilePlace place;
    for (; place.frame < kFrames; place = PlaceAfter(place, scale))
        begun += listed.At(place).begins ? 1 : 0;
    listed.Finish(place);
    Require(begun == list.scenes.size() && listed.LeftOut() <= kFrames);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    for (const std::optional<SourceTimecode>& first :
         {std::optional<SourceTimecode>(), std::optional(SourceTimecode{107'892, true, 30})})
        try {
            Follow(ParseSceneList({reinterpret_cast<const char*>(data), size}, "list"), first);
        } catch (const HostError& error) {
            Require(std::string_view(error.what()).find('\n') == std::string_view::npos);
        }
    return 0;
}
