// kxscenes-graph: an example of a host. From a video file to its scenes, in a DirectShow graph.
#include "hosts/cli/GraphOptions.h"
#include "hosts/graph/Com.h"
#include "hosts/graph/GraphHost.h"
#include "platform/Text.h"
#include "reading/base/Console.h"
#include "reading/base/HostError.h"
#include "reading/base/StandardStreams.h"

#include <windows.h>

#include <atomic>
#include <cstdio>
#include <exception>
#include <string>
#include <vector>

namespace {

using namespace scenedetect;

std::atomic<bool> g_stop = false;

BOOL WINAPI StopRun(DWORD event) {
    if (event != CTRL_C_EVENT && event != CTRL_BREAK_EVENT)
        return FALSE;
    // The second one is left to the system, which ends the program at once.
    return g_stop.exchange(true) ? FALSE : TRUE;
}

int PrintAndEnd(const EarlyEnd& end) {
    if (end.exitCode == kExitSuccess)
        WriteOutput(end.text);
    else
        std::fputs(end.text.c_str(), stderr);
    return end.exitCode;
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
    // Inside, text is UTF-8.
    SetConsoleOutputCP(CP_UTF8);
    SetConsoleCtrlHandler(StopRun, TRUE);
    std::vector<std::string> texts;
    std::vector<const char*> arguments;
    for (int i = 0; i < argc; ++i)
        texts.push_back(Utf8FromWide(argv[i]));
    for (const std::string& text : texts)
        arguments.push_back(text.c_str());
    Console console("kxscenes-graph");
    return Run(argc, arguments.data(), console);
}
