// kxscenes: from a video file to its scenes.
#include "hosts/cli/KxOptions.h"
#include "products/files/UnfinishedFile.h"
#include "reading/base/Console.h"
#include "reading/ffmpeg/FfmpegLog.h"
#include "running/batch/RunAll.h"
#include "running/batch/SavedRun.h"

#include <atomic>
#include <csignal>
#include <cstdio>
#include <exception>
#include <fcntl.h>
#include <unistd.h>

namespace {

std::atomic<bool> g_stop = false;
static_assert(std::atomic<bool>::is_always_lock_free, "set by a signal handler");

void EndAtOnce(int signal) {
    scenedetect::UnfinishedFile::RemoveAll();
    std::signal(signal, SIG_DFL);
    std::raise(signal);
}

void StopRun(int /*signal*/) {
    g_stop = true;
    std::signal(SIGINT, EndAtOnce);
    std::signal(SIGTERM, EndAtOnce);
}

void SetUpSignals() {
    struct sigaction action = {};
    action.sa_handler = StopRun;
    sigaction(SIGINT, &action, nullptr);
    sigaction(SIGTERM, &action, nullptr);
    // A reader that went away and a file at its limit are errors of writing like any other.
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGXFSZ, SIG_IGN);
}

// A file opened later must not get the number of a standard stream that the caller closed.
bool HoldStandardStreams() {
    bool isOutputOpen = true;
    for (int descriptor = STDIN_FILENO; descriptor <= STDERR_FILENO; ++descriptor) {
        if (fcntl(descriptor, F_GETFD) != -1)
            continue;
        isOutputOpen = isOutputOpen && descriptor != STDOUT_FILENO;
        if (open("/dev/null", O_RDWR) != descriptor)
            return false;
    }
    return isOutputOpen;
}

scenedetect::Verbosity VerbosityOf(const scenedetect::KxOptions& options) {
    return options.isQuiet     ? scenedetect::Verbosity::Quiet
           : options.isVerbose ? scenedetect::Verbosity::Verbose
                               : scenedetect::Verbosity::Normal;
}

int Run(const scenedetect::BatchSettings& batch, scenedetect::Console& console) {
    try {
        if (!batch.savedStatsPath.empty()) {
            scenedetect::DecideFromStats(batch, console);
            return scenedetect::kExitSuccess;
        }
        scenedetect::OutputClaims claims;
        const auto plans = scenedetect::MakePlans(batch, claims);
        const bool isDone = scenedetect::RunAll(plans, batch.jobs, claims, g_stop, console);
        return isDone ? scenedetect::kExitSuccess : scenedetect::kExitFailure;
    } catch (const std::exception& error) {
        console.Error(error.what());
    }
    return scenedetect::kExitFailure;
}

} // namespace

int main(int argc, char** argv) {
    const bool isOutputOpen = HoldStandardStreams();
    scenedetect::KxOptions options;
    if (const auto end = scenedetect::ParseCommandLine(argc, argv, options)) {
        std::FILE* target = end->exitCode == scenedetect::kExitSuccess ? stdout : stderr;
        const bool isPrinted = std::fputs(end->text.c_str(), target) >= 0 && std::fflush(target) == 0;
        return isPrinted ? end->exitCode : scenedetect::kExitFailure;
    }
    scenedetect::Console console("kxscenes", VerbosityOf(options));
    if (!isOutputOpen) {
        console.Error("standard output is closed");
        return scenedetect::kExitFailure;
    }
    SetUpSignals();
    scenedetect::CaptureFfmpegLog();
    return Run(options.batch, console);
}
