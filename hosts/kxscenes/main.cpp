// kxscenes: from a video file to its scenes.
#include "hosts/kxscenes/FfmpegLog.h"
#include "hosts/kxscenes/Options.h"
#include "hosts/kxscenes/SceneHost.h"
#include "hosts/shared/Console.h"
#include "hosts/shared/HostError.h"

#include <atomic>
#include <csignal>
#include <cstdio>
#include <exception>
#include <fcntl.h>
#include <unistd.h>

namespace {

std::atomic<bool> g_stop = false;
static_assert(std::atomic<bool>::is_always_lock_free, "set by a signal handler");

void StopRun(int /*signal*/) {
    g_stop = true;
    // The next one ends the program at once.
    std::signal(SIGINT, SIG_DFL);
    std::signal(SIGTERM, SIG_DFL);
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

int Run(const scenedetect::Options& options, scenedetect::Console& console) {
    try {
        scenedetect::SceneHost(options, g_stop, console).Run();
        return scenedetect::kExitSuccess;
    } catch (const scenedetect::HostError& error) {
        console.Message(error.what());
    } catch (const std::exception& error) {
        console.Message(options.input + ": " + error.what()); // memory ran out, for one
    }
    return scenedetect::kExitFailure;
}

} // namespace

int main(int argc, char** argv) {
    const bool isOutputOpen = HoldStandardStreams();
    const scenedetect::CommandLine commandLine = scenedetect::ParseCommandLine(argc, argv);
    if (!commandLine.options) {
        std::FILE* target = commandLine.exitCode == scenedetect::kExitSuccess ? stdout : stderr;
        const bool isPrinted = std::fputs(commandLine.text.c_str(), target) >= 0 && std::fflush(target) == 0;
        return isPrinted ? commandLine.exitCode : scenedetect::kExitFailure;
    }
    scenedetect::Console console("kxscenes");
    if (!isOutputOpen) {
        console.Message("standard output is closed");
        return scenedetect::kExitFailure;
    }
    SetUpSignals();
    scenedetect::CaptureFfmpegLog();
    return Run(*commandLine.options, console);
}
