// Runs a program in a console of its own, where Ctrl-C is pressed once the program has printed something:
//   console_event once|again PROGRAM [ARGUMENTS]
// "again": it is pressed until the program has ended, and what that prints is read after that only. The exit
// code is the program's.
#include <windows.h>

#include <cwchar>
#include <string>
#include <string_view>

namespace {

// What has come; nothing at the end.
std::string_view Read(HANDLE pipe) {
    static char piece[1 << 12];
    DWORD count = 0;
    return ReadFile(pipe, piece, sizeof piece, &count, nullptr) ? std::string_view(piece, count)
                                                                : std::string_view();
}

void Print(std::string_view text) {
    DWORD written = 0;
    WriteFile(GetStdHandle(STD_OUTPUT_HANDLE), text.data(), static_cast<DWORD>(text.size()), &written,
              nullptr);
}

} // namespace

int wmain(int argc, wchar_t** argv) {
    const bool isImpatient = argc > 2 && std::wstring_view(argv[1]) == L"again";
    std::wstring command;
    for (int i = 2; i < argc; ++i)
        command += L'"' + std::wstring(argv[i]) + L"\" ";

    STARTUPINFOW start{};
    start.cb = sizeof start;
    start.dwFlags = STARTF_USESTDHANDLES;
    start.hStdInput = GetStdHandle(STD_INPUT_HANDLE);
    start.hStdError = GetStdHandle(STD_ERROR_HANDLE);
    const HANDLE output = GetStdHandle(STD_OUTPUT_HANDLE);
    FreeConsole();
    AllocConsole();
    SetStdHandle(STD_OUTPUT_HANDLE, output);
    SetConsoleCtrlHandler([](DWORD) -> BOOL { return TRUE; }, TRUE); // this program goes on

    SECURITY_ATTRIBUTES inherited{sizeof inherited, nullptr, TRUE};
    HANDLE printed = nullptr;
    PROCESS_INFORMATION process{};
    if (!CreatePipe(&printed, &start.hStdOutput, &inherited, 1))
        return 99;
    SetHandleInformation(printed, HANDLE_FLAG_INHERIT, 0);
    SetHandleInformation(start.hStdInput, HANDLE_FLAG_INHERIT, HANDLE_FLAG_INHERIT);
    SetHandleInformation(start.hStdError, HANDLE_FLAG_INHERIT, HANDLE_FLAG_INHERIT);
    if (!CreateProcessW(nullptr, command.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr, &start,
                        &process))
        return 98;
    CloseHandle(start.hStdOutput);
    Print(Read(printed));
    constexpr DWORD kBetweenKeys = 100; // milliseconds; two at once would be one
    do
        GenerateConsoleCtrlEvent(CTRL_C_EVENT, 0);
    while (isImpatient && WaitForSingleObject(process.hProcess, kBetweenKeys) == WAIT_TIMEOUT);
    for (std::string_view text = Read(printed); !text.empty(); text = Read(printed))
        Print(text);
    WaitForSingleObject(process.hProcess, INFINITE);
    DWORD code = 0;
    GetExitCodeProcess(process.hProcess, &code);
    return static_cast<int>(code);
}
