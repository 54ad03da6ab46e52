// kxscenes: from a video file to its scenes.
#include "hosts/cli/KxOptions.h"
#include "products/files/UnfinishedFile.h"
#include "reading/base/Console.h"
#include "reading/base/HostError.h"
#include "reading/ffmpeg/FfmpegLog.h"
#include "running/batch/RunAll.h"
#include "running/batch/SavedRun.h"

#include <array>
#include <atomic>
#include <csignal>
#include <cstdio>
#include <exception>
#include <fcntl.h>
#include <unistd.h>

namespace {

std::atomic<bool> g_stop = false;
std::atomic<int> g_signal = 0; // that has stopped the run
static_assert(std::atomic<bool>::is_always_lock_free && std::atomic<int>::is_always_lock_free,
              "set by a signal handler");

// Of a terminal, a service, and a terminal that is gone.
constexpr std::array kStopSignals = {SIGINT, SIGTERM, SIGHUP};

void EndAtOnce(int signal) {
    scenedetect::UnfinishedFile::RemoveAll();
    std::signal(signal, SIG_DFL);
    std::raise(signal);
}

void StopRun(int signal) {
    int none = 0;
    if (!g_signal.compare_exchange_strong(none, signal))
        EndAtOnce(signal);
    g_stop = true;
}

void SetUpSignals() {
    struct sigaction action = {};
    action.sa_handler = StopRun;
    struct sigaction hangUp = {};
    sigaction(SIGHUP, nullptr, &hangUp);
    for (const int each : kStopSignals)
        if (each != SIGHUP || hangUp.sa_handler != SIG_IGN) // as nohup sets it
            sigaction(each, &action, nullptr);
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

int ExitCodeOf(scenedetect::BatchEnding ending) {
    constexpr int kSignal = 128; // as shells count
    switch (ending) {
    case scenedetect::BatchEnding::Complete:
        return scenedetect::kExitSuccess;
    case scenedetect::BatchEnding::BrokeOff:
        return scenedetect::kExitPartial;
    case scenedetect::BatchEnding::Stopped:
        return kSignal + g_signal;
    case scenedetect::BatchEnding::OutputClosed:
        return kSignal + SIGPIPE;
    case scenedetect::BatchEnding::Failed:
        break;
    }
    return scenedetect::kExitFailure;
}

scenedetect::BatchEnding Run(const scenedetect::BatchSettings& batch, scenedetect::Console& console) {
    using scenedetect::BatchEnding;
    try {
        scenedetect::OutputClaims claims;
        if (!batch.savedStatsPaths.empty()) {
            scenedetect::DecideFromStats(batch, claims, console);
            return BatchEnding::Complete;
        }
        const auto plans = scenedetect::MakePlans(batch, claims);
        return scenedetect::RunAll(plans, batch.jobs, claims, g_stop, console);
    } catch (const scenedetect::OutputClosed&) {
        return BatchEnding::OutputClosed;
    } catch (const std::exception& error) {
        console.Error(scenedetect::ErrorText(error));
    }
    return BatchEnding::Failed;
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
    return ExitCodeOf(Run(options.batch, console));
}
