// In place of this room's sources where FFmpeg's libraries are not.
#include "products/muxing/EncodeChoice.h"
#include "products/muxing/RemuxDv.h"
#include "reading/base/HostError.h"

namespace scenedetect {
namespace {

constexpr const char* kAdvice =
    "this build puts clips into no container; without --container they are raw DV";

} // namespace

std::string EncodeFault(const std::string& /*text*/) {
    return ""; // the option itself is refused
}

Container ContainerNamed(const std::string& /*name*/) {
    throw HostError(kAdvice);
}

RemuxedDv RemuxDv(const std::string& /*raw*/, const FilePart& /*part*/, const Container& /*container*/,
                  OutputFile& /*target*/) {
    throw HostError(kAdvice);
}

RemuxedDv EncodeDv(const std::string& /*raw*/, const FilePart& /*part*/, const Container& /*container*/,
                   const EncodeChoice& /*choice*/, OutputFile& /*target*/) {
    throw HostError(kAdvice);
}

void RequireDvEncodable(const std::string& /*path*/, const EncodeChoice& /*choice*/,
                        const Container& /*container*/, bool /*hasAudio*/) {
    throw HostError(kAdvice);
}

} // namespace scenedetect
