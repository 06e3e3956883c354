// A program that a test starts, watches and ends.
#pragma once

#include <sys/types.h>

#include <chrono>
#include <filesystem>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace nivora {

using Seconds = std::chrono::duration<double>;

/// How long a step may take on a busy machine. Only a failure waits that long.
inline constexpr Seconds k_patience{20.0};

/// Asks repeatedly until the answer is yes. @return whether it came in time
bool wait_until(const std::function<bool()>& asked, Seconds at_most = k_patience);

/// Whether a program of this name can be started.
[[nodiscard]] bool is_installed(const std::string& program);

/// Variables that a started program gets besides those of the test; an empty value removes one.
using Environment = std::map<std::string, std::string>;

class StartedProgram {
public:
    /// @param log the file for the program's output
    /// @param shown_file_number a file descriptor of this process that
    /// the program inherits under the same number
    StartedProgram(const std::vector<std::string>& command, const Environment& environment,
                   const std::filesystem::path& log, std::optional<int> shown_file_number = std::nullopt);
    StartedProgram(const StartedProgram&) = delete;
    StartedProgram& operator=(const StartedProgram&) = delete;
    /// Ends the program if it still runs.
    ~StartedProgram();

    [[nodiscard]] pid_t number() const { return number_; }
    [[nodiscard]] bool runs();
    /// The exit status of the program: its own, or 128 plus the number
    /// of the signal that ended it, as in shells.
    /// @return nothing if it still runs after the time
    std::optional<int> status(Seconds at_most = k_patience);
    void send(int signal);
    [[nodiscard]] std::string printed() const;

private:
    pid_t number_ = -1;
    std::optional<int> status_;
    std::filesystem::path log_;
};

/// The end of a program that run_program has run: its status, and what it printed.
struct Finished {
    int status = -1;
    std::string printed;
};
Finished run_program(const std::vector<std::string>& command, const Environment& environment = {});

}  // namespace nivora
