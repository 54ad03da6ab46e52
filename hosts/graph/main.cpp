// kxscenes-graph: an example of a host. From a video file to its scenes, in a DirectShow graph.
#include "hosts/cli/GraphOptions.h"
#include "hosts/cli/WideArguments.h"
#include "hosts/graph/Com.h"
#include "hosts/graph/GraphHost.h"
#include "reading/base/Console.h"
#include "reading/base/HostError.h"

#include <windows.h>

#include <atomic>
#include <exception>

namespace {

using namespace scenedetect;

std::atomic<bool> g_stop = false;

BOOL WINAPI StopRun(DWORD event) {
    if (event != CTRL_C_EVENT && event != CTRL_BREAK_EVENT)
        return FALSE;
    // The second one is left to the system, which ends the program at once.
    return g_stop.exchange(true) ? FALSE : TRUE;
}

int Run(int argc, const char* const* argv, Console& console) {
    try {
        GraphOptions options;
        if (const auto end = ParseCommandLine(argc, argv, options))
            return PrintAndEnd(*end);
        const ComLibrary com;
        GraphHost(options, g_stop, console).Run();
        return kExitSuccess;
    } catch (const std::exception& error) {
        console.Error(error.what());
    }
    return kExitFailure;
}

} // namespace

int wmain(int argc, wchar_t** argv) {
    SetConsoleCtrlHandler(StopRun, TRUE);
    const WideArguments arguments(argc, argv);
    Console console("kxscenes-graph");
    return Run(argc, arguments.Texts(), console);
}
