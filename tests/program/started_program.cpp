#include "tests/program/started_program.h"

#include "tests/support/temporary_folder.h"

#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <thread>

namespace nivora {
namespace {

namespace fs = std::filesystem;

std::vector<std::string> joined(const Environment& changes) {
    std::vector<std::string> lines;
    for (char** entry = environ; *entry != nullptr; ++entry) {
        const std::string line{*entry};
        if (!changes.contains(line.substr(0, line.find('=')))) lines.push_back(line);
    }
    for (const auto& [name, value] : changes) {
        if (!value.empty()) lines.push_back(name + "=" + value);
    }
    return lines;
}

std::vector<char*> as_pointers(std::vector<std::string>& texts) {
    std::vector<char*> pointers;
    pointers.reserve(texts.size() + 1);
    for (std::string& text : texts) pointers.push_back(text.data());
    pointers.push_back(nullptr);
    return pointers;
}

/// Runs between fork and the start of the program, so only calls that are allowed there.
[[noreturn]] void become(char* const* arguments, char* const* environment, const char* log, pid_t parent,
                         int kept) {
    prctl(PR_SET_PDEATHSIG, SIGKILL);  // a test that is killed leaves no program behind
    if (getppid() != parent) _exit(127);
    const int out = open(log, O_WRONLY | O_CREAT | O_APPEND, 0644);
    const int in = open("/dev/null", O_RDONLY);
    dup2(in, STDIN_FILENO);
    dup2(out, STDOUT_FILENO);
    dup2(out, STDERR_FILENO);
    if (kept >= 0) fcntl(kept, F_SETFD, 0);
    execvpe(arguments[0], arguments, environment);
    _exit(127);
}

}  // namespace

bool wait_until(const std::function<bool()>& asked, Seconds at_most) {
    const auto end = std::chrono::steady_clock::now() + at_most;
    for (;;) {
        if (asked()) return true;
        if (std::chrono::steady_clock::now() > end) return false;
        std::this_thread::sleep_for(std::chrono::milliseconds{20});
    }
}

bool is_installed(const std::string& program) {
    const char* path = std::getenv("PATH");
    std::string folders = path == nullptr ? "" : path;
    for (std::size_t at = 0; at <= folders.size();) {
        const std::size_t end = std::min(folders.find(':', at), folders.size());
        if (access((folders.substr(at, end - at) + "/" + program).c_str(), X_OK) == 0) return true;
        at = end + 1;
    }
    return false;
}

StartedProgram::StartedProgram(const std::vector<std::string>& command, const Environment& environment,
                               const fs::path& log, std::optional<int> shown_file_number)
    : log_(log) {
    std::vector<std::string> arguments = command;
    std::vector<std::string> variables = joined(environment);
    const std::vector<char*> argument_pointers = as_pointers(arguments);
    const std::vector<char*> variable_pointers = as_pointers(variables);
    const pid_t parent = getpid();
    number_ = fork();
    if (number_ == 0) {
        become(argument_pointers.data(), variable_pointers.data(), log_.c_str(), parent,
               shown_file_number.value_or(-1));
    }
    if (number_ < 0) throw std::runtime_error("no program can be started");
}

StartedProgram::~StartedProgram() {
    if (!runs()) return;
    send(SIGKILL);
    status();
}

bool StartedProgram::runs() { return !status(Seconds{0.0}); }

std::optional<int> StartedProgram::status(Seconds at_most) {
    if (status_) return status_;
    wait_until(
        [this] {
            int status = 0;
            if (waitpid(number_, &status, WNOHANG) != number_) return false;
            status_ = WIFSIGNALED(status) ? 128 + WTERMSIG(status) : WEXITSTATUS(status);
            return true;
        },
        at_most);
    return status_;
}

void StartedProgram::send(int signal) {
    if (!status_) ::kill(number_, signal);
}

std::string StartedProgram::printed() const { return fs::exists(log_) ? file_bytes(log_) : std::string{}; }

Finished run_program(const std::vector<std::string>& command, const Environment& environment) {
    const TemporaryFolder folder;
    StartedProgram program{command, environment, folder / "printed"};
    const auto status = program.status();
    return {status.value_or(-1), program.printed()};
}

}  // namespace nivora
