#include "products/files/OutputClaims.h"

#include "reading/base/HostError.h"

#include <filesystem>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace scenedetect {

void OutputClaims::AddInput(const std::string& path) {
    struct stat status {};
    if (stat(path.c_str(), &status) != 0 || !S_ISREG(status.st_mode))
        return;
    const std::lock_guard lock(m_mutex);
    m_inputs.emplace(status.st_dev, status.st_ino);
}

void OutputClaims::Claim(const std::string& path) {
    const OutputTarget target = FindOutputTarget(path, Existing::Replace);
    if (target.kind == OutputTarget::Kind::Device)
        return;
    struct stat status {};
    const bool exists = stat(target.file.c_str(), &status) == 0;
    std::error_code error;
    const std::filesystem::path whole =
        std::filesystem::weakly_canonical(std::filesystem::absolute(target.file, error), error);
    const std::lock_guard lock(m_mutex);
    if (exists && m_inputs.contains({status.st_dev, status.st_ino}))
        throw HostError(path +
                        ": is an input of this run and would be overwritten; choose another name or folder");
    if (target.kind == OutputTarget::Kind::Descriptor) {
        if (!m_descriptors.insert(target.descriptor).second)
            throw HostError(NameOfOutput(path) + ": only one output of one input can go there");
    } else if (!m_outputs.insert((error ? target.file : whole).native()).second)
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
    return m_descriptors.contains(STDOUT_FILENO);
}

} // namespace scenedetect
