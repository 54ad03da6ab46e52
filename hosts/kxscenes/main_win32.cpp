// kxscenes on Windows: events of the console stop it.
#include "hosts/cli/WideArguments.h"
#include "hosts/kxscenes/Program.h"
#include "products/files/UnfinishedFile.h"

#include <windows.h>

namespace {

std::atomic<bool> g_stop = false;
std::atomic<int> g_signal = 0; // that has stopped the run
HANDLE g_ended = nullptr;      // set once the run is over

constexpr int kHangUp = 1;
constexpr int kInterrupt = 2;
constexpr DWORD kPatience = 4000; // milliseconds; after a second more the system ends the program

// On a thread of its own. TRUE: the program goes on.
BOOL WINAPI StopRun(DWORD event) {
    const bool isKey = event == CTRL_C_EVENT || event == CTRL_BREAK_EVENT;
    const int signal = isKey ? kInterrupt : kHangUp;
    int none = 0;
    const bool isFirst = g_signal.compare_exchange_strong(none, signal);
    g_stop = true;
    if (isKey && isFirst)
        return TRUE;
    // When a console closes, the system ends the program as soon as this returns.
    if (!isKey && WaitForSingleObject(g_ended, kPatience) == WAIT_OBJECT_0)
        Sleep(INFINITE); // the program is ending
    // A second key, or a run that does not end in time.
    scenedetect::UnfinishedFile::RemoveAll();
    TerminateProcess(GetCurrentProcess(), static_cast<UINT>(scenedetect::kSignalExit + signal));
    return FALSE;
}

void Begin() {
    SetConsoleCtrlHandler(StopRun, TRUE);
}

} // namespace

int wmain(int argc, wchar_t** argv) {
    g_ended = CreateEventW(nullptr, TRUE, FALSE, nullptr);
    const bool isOutputOpen = GetFileType(GetStdHandle(STD_OUTPUT_HANDLE)) != FILE_TYPE_UNKNOWN;
    const scenedetect::WideArguments arguments(argc, argv);
    const int code =
        scenedetect::RunProgram(argc, arguments.Texts(), {g_stop, g_signal, isOutputOpen, Begin});
    SetEvent(g_ended);
    return code;
}
