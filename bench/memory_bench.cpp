// The peak memory of the batch program's commands on a basin of fifty years: the largest resident size of
// each as a process of its own. A command should stay below 40 MB.

#include "bench/bench_basin.h"

#include <fmt/format.h>
#include <spawn.h>

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

namespace nivora {
namespace {

namespace fs = std::filesystem;

constexpr int k_years = 50;
constexpr int k_zones = 16;
/// The number of zones in the imported file.
constexpr int k_legacy_zones = 5;

/// The exit status and the peak memory of a process; -1 if it did not exit normally.
struct Usage {
    int status = -1;
    double peak_mb = 0.0;
};

Usage ended(pid_t child) {
    int status = 0;
    rusage usage{};
    if (child <= 0 || wait4(child, &status, 0, &usage) != child || !WIFEXITED(status)) return {};
    return {WEXITSTATUS(status), static_cast<double>(usage.ru_maxrss) / 1024.0};  // in KiB on Linux
}

Usage run(const std::vector<std::string>& arguments) {
    std::vector<std::string> texts{NIVORA_BATCH_PROGRAM};
    texts.insert(texts.end(), arguments.begin(), arguments.end());
    std::vector<char*> argv;
    for (std::string& text : texts) argv.push_back(text.data());
    argv.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    for (const int output : {STDOUT_FILENO, STDERR_FILENO})
        posix_spawn_file_actions_addopen(&actions, output, "/dev/null", O_WRONLY, 0);
    pid_t child = -1;
    posix_spawn(&child, NIVORA_BATCH_PROGRAM, &actions, nullptr, argv.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    return ended(child);
}

/// Writes a basin in a process of its own, since the peak memory of this process
/// counts for every process that it starts later.
bool write_basin(const fs::path& path, int zones) {
    const pid_t child = fork();
    if (child == 0) {
        try {
            write_bench_basin(path, zones, k_years);
        } catch (const std::exception& error) {
            fmt::print(stderr, "{}\n", error.what());
            _exit(1);
        }
        _exit(0);
    }
    return ended(child).status == 0;
}

/// A temporary folder, removed at the end.
struct Folder {
    Folder() : path(fs::temp_directory_path() / fmt::format("nivora-memory-{}", getpid())) {
        fs::create_directories(path);
    }
    Folder(const Folder&) = delete;
    Folder& operator=(const Folder&) = delete;
    ~Folder() {
        std::error_code ignored;
        fs::remove_all(path, ignored);
    }
    [[nodiscard]] std::string operator/(const char* name) const { return (path / name).string(); }

    fs::path path;
};

int measure() {
    const Folder folder;
    const std::string basin = folder / "basin.mdb";
    const std::string small = folder / "small.mdb";
    if (!write_basin(basin, k_zones) || !write_basin(small, k_legacy_zones)) return 1;
    const std::string legacy = std::string{NIVORA_SOURCE_DIR} + "/data/samples/ellervane-1996.NVR";
    const std::string simulation = "last year";
    const auto megabytes = [](const std::string& file) {
        return static_cast<double>(fs::file_size(file)) / 1048576.0;
    };
    fmt::print("{} years of daily data: {} zones, {:.0f} MB; for the import {} zones, {:.0f} MB\n\n", k_years,
               k_zones, megabytes(basin), k_legacy_zones, megabytes(small));
    const std::vector<std::vector<std::string>> commands{
        {"import", legacy, small},
        {"simulations", basin},
        {"run", basin, "--simulation", simulation},
        {"scenario", basin, "--simulation", simulation, "--name", "warmer", "--edit",
         "1:2040-01-01:2040-06-30:0:2:0"},
        {"climate", basin, "--simulation", simulation, "--scenario", "warmer"},
        {"export", basin, "PhysicalData", "--csv", folder / "variables.csv"},
        {"export", basin, "SimResults", "--csv", folder / "results.csv"},
        {"check", basin},
        {"salvage", basin, folder / "salvaged.mdb"}};
    fmt::print("{:<24}{:>10}\n", "command", "peak, MB");
    int failures = 0;
    for (const auto& command : commands) {
        const Usage usage = run(command);
        const std::string name = command[0] == "export" ? command[0] + " " + command[2] : command[0];
        if (usage.status < 0) ++failures;
        // An evaluation of more than nine zones ends with status 1: a message says that its sums omit zones.
        const std::string status = usage.status == 0 ? "" : fmt::format("   status {}", usage.status);
        fmt::print("{:<24}{:>10.1f}{}\n", name, usage.peak_mb, status);
        std::fflush(stdout);
    }
    return failures == 0 ? 0 : 1;
}

}  // namespace
}  // namespace nivora

int main() { return nivora::measure(); }
