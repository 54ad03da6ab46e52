// Runs a program in a console of its own, where Ctrl-C is pressed once the program has printed something:
//   console_event once|again PROGRAM [ARGUMENTS]
// "again": it is pressed until the program has ended, and nobody reads what that prints meanwhile. The exit
// code is the program's.
#include <windows.h>

#include <string>

int wmain(int argc, wchar_t** argv) {
    std::wstring command;
    for (int i = 2; i < argc; ++i)
        command += L'"' + std::wstring(argv[i]) + L"\" ";
    STARTUPINFOW start{};
    start.cb = sizeof start;
    start.dwFlags = STARTF_USESTDHANDLES;
    start.hStdInput = GetStdHandle(STD_INPUT_HANDLE);
    start.hStdError = GetStdHandle(STD_ERROR_HANDLE);
    FreeConsole();
    AllocConsole();
    SetConsoleCtrlHandler([](DWORD) -> BOOL { return TRUE; }, TRUE); // this program goes on

    SECURITY_ATTRIBUTES inherited{sizeof inherited, nullptr, TRUE};
    HANDLE printed = nullptr;
    PROCESS_INFORMATION process{};
    if (argc < 3 || !CreatePipe(&printed, &start.hStdOutput, &inherited, 1) ||
        !CreateProcessW(nullptr, command.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr, &start,
                        &process))
        return 99;
    CloseHandle(start.hStdOutput);
    char piece[1 << 12];
    DWORD count = 0;
    if (!ReadFile(printed, piece, sizeof piece, &count, nullptr))
        return 98;
    constexpr DWORD kBetweenKeys = 100; // milliseconds; two at once would be one
    do
        GenerateConsoleCtrlEvent(CTRL_C_EVENT, 0);
    while (argv[1] == std::wstring(L"again") &&
           WaitForSingleObject(process.hProcess, kBetweenKeys) == WAIT_TIMEOUT);
    while (ReadFile(printed, piece, sizeof piece, &count, nullptr)) {
    }
    WaitForSingleObject(process.hProcess, INFINITE);
    DWORD code = 0;
    GetExitCodeProcess(process.hProcess, &code);
    return static_cast<int>(code);
}
