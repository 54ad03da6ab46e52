// The names that a run writes to, so that it never overwrites what it wrote itself, nor what it reads.
#pragma once

#include "reading/base/FileFacts.h"

#include <mutex>
#include <set>
#include <string>

namespace scenedetect {

/// One for all inputs of a run. Any thread.
class OutputClaims {
  public:
    /// An input of the run: no output may replace it, under whatever name it is known.
    void AddInput(const std::string& path);
    /// HostError when this run has claimed the file or the standard stream before, or reads it. Pipes and
    /// devices with names may be claimed again and again.
    void Claim(const std::string& path);
    /// Claims a file in this folder, and returns its path.
    [[nodiscard]] std::string ClaimIn(const std::string& folder, const std::string& name);
    /// Whether the standard output is among what was claimed.
    [[nodiscard]] bool HasStandardOutput() const;

  private:
    mutable std::mutex m_mutex;
    std::set<FileIdentity> m_inputs;
    std::set<std::string> m_outputs;
    std::set<int> m_descriptors;
};

} // namespace scenedetect
