// How far a long command is, on standard error: a bar on a terminal, plain lines elsewhere.
#pragma once

#include <chrono>
#include <cstddef>
#include <functional>
#include <iosfwd>
#include <mutex>
#include <string>

namespace nivora {

/// Whether standard error is a terminal.
[[nodiscard]] bool errors_go_to_terminal();

/// Tells the rate and the time that is left. `update` may be called from several threads and as often as one
/// likes.
class Progress {
public:
    using Clock = std::function<std::chrono::steady_clock::time_point()>;

    /// @param total above 0
    /// @param pieces what is counted, such as "evaluations"
    Progress(std::ostream& report, bool terminal, std::string pieces, std::size_t total,
             Clock clock = std::chrono::steady_clock::now);
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;
    /// Ends the bar's line.
    ~Progress();

    void update(std::size_t done);

private:
    void print(std::size_t done, std::chrono::steady_clock::time_point now);

    std::ostream& report_;
    bool terminal_;
    std::string pieces_;
    std::size_t total_;
    Clock clock_;
    std::chrono::steady_clock::time_point start_;
    std::chrono::steady_clock::time_point next_;
    bool printed_ = false;
    bool full_ = false;
    std::mutex mutex_;
};

}  // namespace nivora
