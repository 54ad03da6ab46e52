#include "reading/readers/Irregularity.h"

namespace scenedetect {
namespace {

std::string Count(std::int64_t count, const std::string& what) {
    return std::to_string(count) + ' ' + what + (count == 1 ? "" : "s");
}

} // namespace

std::string IrregularityText(const Irregularity& it) {
    constexpr std::int64_t kBlockBytes = 80;
    const bool isOne = it.frames == 1;
    const std::string at = " at byte " + std::to_string(it.byteOffset);
    const std::string frames =
        isOne ? "frame " + std::to_string(it.frame)
              : "frames " + std::to_string(it.frame) + " to " + std::to_string(it.frame + it.frames - 1);
    const std::string leftOut = frames + at + (isOne ? " is left out: " : " are left out: ");
    switch (it.kind) {
    case IrregularityKind::UnknownBytes:
        return Count(it.bytes, "byte") + at + (it.bytes == 1 ? " is" : " are") + " no DV, before frame " +
               std::to_string(it.frame);
    case IrregularityKind::Unreadable:
        return leftOut + "no DV in " + Count(it.bytes, "byte");
    case IrregularityKind::MissingBytes:
        return leftOut + Count(it.bytes, "byte") + (isOne ? " of it" : " of them") +
               (it.bytes == 1 ? " is missing" : " are missing");
    case IrregularityKind::MissingFrames:
        return frames + (isOne ? " is missing" : " are missing") + at + ", as the timecode tells";
    case IrregularityKind::DamagedBlocks:
        return "frame " + std::to_string(it.frame) + " has " +
               Count(it.bytes / kBlockBytes, "damaged block") + ", the first" + at;
    case IrregularityKind::CutEnd:
        return "ends" + at + " inside frame " + std::to_string(it.frame) + ", which is left out";
    }
    return "";
}

} // namespace scenedetect
