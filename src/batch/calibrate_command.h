// The command that searches the numbers which make a simulation meet the measured discharge best.
#pragma once

#include "search/study_command.h"

#include <CLI/CLI.hpp>

#include <iosfwd>
#include <memory>

namespace nivora {

struct CalibrateCommand {
    StudyCommand study;
    std::size_t evaluations = 5000;
    std::optional<std::filesystem::path> out;  ///< JSON
    std::optional<std::string> save_as;        ///< the name of a new simulation
    bool resume = false;
};

struct CalibrateTexts;

/// The command with its options; the texts live as long as the application.
class CalibrateOptions {
public:
    explicit CalibrateOptions(CLI::App& app);
    ~CalibrateOptions();

    [[nodiscard]] const CLI::App& app() const { return *command_; }
    [[nodiscard]] CalibrateCommand command(std::chrono::milliseconds wait) const;

private:
    std::unique_ptr<CalibrateTexts> texts_;
    CLI::App* command_;
};

/// Searches, prints what was found, and writes it where the options say. The basin changes only by a new
/// simulation.
/// @param terminal whether `err` is a terminal
int calibrate_command(const CalibrateCommand& command, BatchDialogs& dialogs, std::ostream& out,
                      std::ostream& err, bool terminal);

}  // namespace nivora
