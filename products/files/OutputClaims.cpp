#include "products/files/OutputClaims.h"

#include "products/files/SystemFile.h"
#include "reading/base/HostError.h"

namespace scenedetect {

void OutputClaims::AddInput(const std::string& path) {
    if (const FileIdentity identity = FactsOf(path).identity; identity != FileIdentity{}) {
        const std::lock_guard lock(m_mutex);
        m_inputs.insert(identity);
    }
}

void OutputClaims::Claim(const std::string& path) {
    const OutputTarget target = FindOutputTarget(path, Existing::Replace);
    if (target.kind == OutputTarget::Kind::Device)
        return;
    const bool isFile = target.kind == OutputTarget::Kind::File;
    const FileIdentity identity = isFile ? FactsOf(NameOfPath(target.file)).identity : FileIdentity{};
    const std::string whole = isFile ? WholeName(target.file) : "";
    const std::lock_guard lock(m_mutex);
    if (m_inputs.contains(identity))
        throw HostError(path +
                        ": is an input of this run and would be overwritten; choose another name or folder");
    if (!isFile) {
        if (!m_descriptors.insert(target.descriptor).second)
            throw HostError(NameOfOutput(path) + ": only one output of one input can go there");
    } else if (!m_outputs.insert(whole).second)
        throw HostError(path +
                        ": would be written twice by this run; let the name's pattern tell the files apart "
                        "({name}, {method} or {scene} in it), or run inputs of one name apart");
}

std::string OutputClaims::ClaimIn(const std::string& folder, const std::string& name) {
    std::string path = PathIn(folder, name);
    Claim(path);
    return path;
}

bool OutputClaims::HasStandardOutput() const {
    const std::lock_guard lock(m_mutex);
    return m_descriptors.contains(kStandardOutput);
}

} // namespace scenedetect
