#include "products/files/OutputTarget.h"

#include "products/files/SystemFile.h"
#include "reading/base/HostError.h"

namespace scenedetect {

void FailToWrite(const std::string& path, int code) {
    throw HostError(NameOfOutput(path) + (IsExistingError(code)
                                              ? ": exists already; --force overwrites it"
                                              : ": cannot be written: " + WriteErrorText(code)));
}

OutputTarget FindOutputTarget(const std::string& path, Existing existing) {
    if (path.empty())
        throw HostError("an output without a name cannot be written");
    return FindNamedTarget(path, existing);
}

} // namespace scenedetect
