// kxscenes: from a video file to its scenes. Signals stop it.
#include "hosts/kxscenes/Program.h"
#include "products/files/UnfinishedFile.h"

#include <array>
#include <atomic>
#include <csignal>
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

void Begin() {
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

} // namespace

int main(int argc, char** argv) {
    const bool isOutputOpen = HoldStandardStreams();
    return scenedetect::RunProgram(argc, argv, {g_stop, g_signal, isOutputOpen, Begin});
}
