// Ending the edits of a movie box, whatever its bytes: those around them stay, and doing it again changes
// nothing.
#include "fuzz/Input.h"
#include "products/muxing/Mp4Edits.h"

using namespace scenedetect;
using fuzz::Require;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::Input input(data, size);
    const auto end = input.Take<std::int64_t>();
    const AVRational timeBase{1, 1 + input.Take<std::uint16_t>()};
    const auto rest = input.TakeBytes(size);
    // A block of its own, so that the address sanitizer guards its ends.
    std::vector<std::uint8_t> movie(rest.begin(), rest.end());
    if (!EndEditsAt(movie, end, timeBase))
        return 0;
    const std::vector<std::uint8_t> ended = movie;
    Require(EndEditsAt(movie, end, timeBase) && movie == ended);
    return 0;
}
