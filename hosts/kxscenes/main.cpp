// kxscenes: from a video file to its scenes.
#include "hosts/files/UnfinishedFile.h"
#include "hosts/kxscenes/Options.h"
#include "hosts/kxscenes/RunAll.h"
#include "hosts/kxscenes/SavedRun.h"
#include "hosts/media/FfmpegLog.h"
#include "hosts/shared/Console.h"

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

scenedetect::Verbosity VerbosityOf(const scenedetect::KxOptions& own) {
    return own.isQuiet     ? scenedetect::Verbosity::Quiet
           : own.isVerbose ? scenedetect::Verbosity::Verbose
                           : scenedetect::Verbosity::Normal;
}

int Run(const scenedetect::Options& options, const scenedetect::KxOptions& own,
        scenedetect::Console& console) {
    try {
        if (!own.requests.savedStatsPath.empty()) {
            scenedetect::DecideFromStats(options, own, console);
            return scenedetect::kExitSuccess;
        }
        scenedetect::OutputClaims claims;
        const auto plans = scenedetect::MakePlans(options, own, claims);
        return scenedetect::RunAll(plans, own.jobs, claims, g_stop, console);
    } catch (const std::exception& error) {
        console.Error(error.what());
    }
    return scenedetect::kExitFailure;
}

} // namespace

int main(int argc, char** argv) {
    const bool isOutputOpen = HoldStandardStreams();
    scenedetect::KxOptions own;
    const scenedetect::CommandLine commandLine = scenedetect::ParseCommandLine(argc, argv, own);
    if (!commandLine.options) {
        std::FILE* target = commandLine.exitCode == scenedetect::kExitSuccess ? stdout : stderr;
        const bool isPrinted = std::fputs(commandLine.text.c_str(), target) >= 0 && std::fflush(target) == 0;
        return isPrinted ? commandLine.exitCode : scenedetect::kExitFailure;
    }
    scenedetect::Console console("kxscenes", VerbosityOf(own));
    if (!isOutputOpen) {
        console.Error("standard output is closed");
        return scenedetect::kExitFailure;
    }
    SetUpSignals();
    scenedetect::CaptureFfmpegLog();
    return Run(*commandLine.options, own, console);
}
