// The command that loads a table of a basin from a CSV file.
#pragma once

#include "engine/batch_dialogs.h"
#include "prep/table_load.h"

#include <CLI/CLI.hpp>

#include <chrono>
#include <filesystem>
#include <iosfwd>
#include <memory>

namespace nivora {

struct LoadCommand {
    std::filesystem::path basin;
    std::filesystem::path csv;
    TableLoad load;
    bool dry_run = false;  ///< only say what a load would do
    std::chrono::milliseconds wait{};
};

struct LoadTexts;

/// The command with its options; the texts live as long as the application.
class LoadOptions {
public:
    explicit LoadOptions(CLI::App& app);
    ~LoadOptions();

    [[nodiscard]] const CLI::App& app() const { return *command_; }
    [[nodiscard]] LoadCommand command(std::chrono::milliseconds wait) const;

private:
    std::unique_ptr<LoadTexts> texts_;
    CLI::App* command_;
};

/// Loads a table, or says what a load would do, and prints how many rows are new, changed, equal and refused.
/// If a row is refused, the basin is unchanged.
int load_command(const LoadCommand& command, BatchDialogs& dialogs, std::ostream& out);

}  // namespace nivora
