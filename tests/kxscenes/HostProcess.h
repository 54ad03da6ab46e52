// Runs programs as the user would, and reads what they print.
#pragma once

#include "tests/TempFolder.h"

#include <cstdint>
#include <filesystem>
#include <string>
#include <sys/types.h>
#include <utility>
#include <vector>

namespace scenedetect::testing_support {

struct ProcessResult {
    int exitCode = -1; // 128 and the signal's number when one ended it
    std::string out;
    std::string err;
    long peakKilobytes = 0;
};

struct ProcessSetup {
    std::vector<std::pair<std::string, std::string>> environment;
    std::string inPath = "/dev/null";
    std::string outPath;      // instead of a file of the runner's own
    bool closeOutput = false; // starts without a standard output
};

/// A running program; the first argument is its name or path.
class Process {
  public:
    explicit Process(const std::vector<std::string>& arguments, const ProcessSetup& setup = {});
    void Signal(int number) const;
    /// What it has printed to standard output so far.
    [[nodiscard]] std::string OutputSoFar() const;
    [[nodiscard]] bool HasEnded() const;
    ProcessResult Wait();

  private:
    TempFolder m_folder;
    pid_t m_pid = -1;
};

/// The kxscenes that is tested, $KXSCENES_PROGRAM or that of the tests' own build, and the folder of the
/// logging library beside it.
std::string KxscenesProgram();
std::string LogFolder();

/// Runs kxscenes to its end.
ProcessResult RunHost(std::vector<std::string> arguments, const ProcessSetup& setup = {});

/// The rows of a CSV output without the header; nothing when the header is not the agreed one.
std::vector<std::string> Rows(const ProcessResult& result);
/// The second column.
std::vector<std::int64_t> Frames(const ProcessResult& result);
/// The words of a text: arguments that have no spaces.
std::vector<std::string> Words(const std::string& text);
/// The lines of a text, without their ends.
std::vector<std::string> Lines(const std::string& text);

} // namespace scenedetect::testing_support
