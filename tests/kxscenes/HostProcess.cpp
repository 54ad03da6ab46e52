#include "tests/kxscenes/HostProcess.h"
#include "tests/Testing.h"

#include <csignal>
#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace scenedetect::testing_support {
namespace {

void OpenAs(const std::string& path, int descriptor) {
    const int flags = descriptor == STDIN_FILENO ? O_RDONLY : O_WRONLY | O_CREAT | O_TRUNC;
    const int file = open(path.c_str(), flags, 0666);
    dup2(file, descriptor);
    close(file);
}

std::string Setting(const char* name, const char* otherwise) {
    const char* const value = std::getenv(name);
    return value ? value : otherwise;
}

} // namespace

std::string KxscenesProgram() {
    return Setting("KXSCENES_PROGRAM", KXSCENES_PROGRAM);
}

std::string LogFolder() {
    return std::filesystem::path(KxscenesProgram()).parent_path() / "tamrak-scene-detect";
}

Process::Process(const std::vector<std::string>& arguments, const ProcessSetup& setup) {
    std::vector<char*> argv;
    for (const std::string& argument : arguments)
        argv.push_back(const_cast<char*>(argument.c_str()));
    argv.push_back(nullptr);
    const std::string out = setup.outPath.empty() ? (m_folder / "out").string() : setup.outPath;
    const std::string err = (m_folder / "err").string();
    m_pid = fork();
    if (m_pid != 0)
        return;
    setenv("XDG_CONFIG_HOME", "/nonexistent", 1); // and not what the tester has configured
    for (const auto& [name, value] : setup.environment)
        setenv(name.c_str(), value.c_str(), 1);
    OpenAs(setup.inPath, STDIN_FILENO);
    OpenAs(out, STDOUT_FILENO);
    OpenAs(err, STDERR_FILENO);
    if (setup.closeOutput)
        close(STDOUT_FILENO);
    execvp(argv[0], argv.data());
    _exit(127);
}

void Process::Signal(int number) const {
    kill(m_pid, number);
}

std::string Process::OutputSoFar() const {
    return ReadWhole(m_folder / "out");
}

bool Process::HasEnded() const {
    siginfo_t ended{};
    return waitid(P_PID, static_cast<id_t>(m_pid), &ended, WEXITED | WNOHANG | WNOWAIT) == 0 &&
           ended.si_pid == m_pid;
}

ProcessResult Process::Wait() {
    int status = 0;
    rusage usage{};
    wait4(m_pid, &status, 0, &usage);
    ProcessResult result;
    result.exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    result.out = OutputSoFar();
    result.err = ReadWhole(m_folder / "err");
    result.peakKilobytes = usage.ru_maxrss;
    return result;
}

ProcessResult RunHost(std::vector<std::string> arguments, const ProcessSetup& setup) {
    arguments.insert(arguments.begin(), KxscenesProgram());
    return Process(arguments, setup).Wait();
}

std::vector<std::string> Words(const std::string& text) {
    std::istringstream words(text);
    return {std::istream_iterator<std::string>(words), {}};
}

std::vector<std::string> Lines(const std::string& text) {
    std::istringstream stream(text);
    std::vector<std::string> lines;
    for (std::string line; std::getline(stream, line);)
        lines.push_back(line);
    return lines;
}

std::vector<std::string> Rows(const ProcessResult& result) {
    std::vector<std::string> lines = Lines(result.out);
    if (lines.empty() || lines.front() != "scene,frame,timecode,seconds")
        return {};
    lines.erase(lines.begin());
    return lines;
}

std::vector<std::int64_t> Frames(const ProcessResult& result) {
    std::vector<std::int64_t> frames;
    for (const std::string& row : Rows(result))
        frames.push_back(std::stoll(row.substr(row.find(',') + 1)));
    return frames;
}

} // namespace scenedetect::testing_support
