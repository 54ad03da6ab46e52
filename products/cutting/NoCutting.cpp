// In place of this room's sources where FFmpeg's libraries are not.
#include "products/cutting/CutPackets.h"
#include "reading/base/HostError.h"

namespace scenedetect {
namespace {

constexpr const char* kAdvice = ": this build cuts DV with its audio in the frames only; ffmpeg puts it "
                                "there (ffmpeg -i IN -c copy OUT.dv), "
                                "or write a list (-o scenes.csv), by which kxscenes on Linux cuts this file: "
                                "--scenes scenes.csv --split DIR";

} // namespace

ClipPlan PlanClips(const std::string& path, const ClipSettings& /*settings*/) {
    throw HostError(path + kAdvice);
}

void CutPackets(const ClipSettings& /*settings*/, PacketCut cut, OutputClaims& /*claims*/,
                const ClipListener& /*listener*/) {
    throw HostError(cut.path + kAdvice);
}

} // namespace scenedetect
