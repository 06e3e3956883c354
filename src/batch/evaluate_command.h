// The command that says how well a computed discharge meets the measured one.
#pragma once

#include "engine/batch_dialogs.h"
#include "studies/compared_days.h"

#include <chrono>
#include <filesystem>
#include <iosfwd>
#include <optional>
#include <string>

namespace nivora {

struct EvaluateCommand {
    std::filesystem::path basin;
    std::string simulation;
    std::optional<std::string> from;  ///< yyyy-mm-dd; the simulation's first day if not given
    std::optional<std::string> to;    ///< its last day if not given
    MonthSet months = all_months();
    bool run = false;  ///< a fresh run also where there are results
    bool json = false;
    std::chrono::milliseconds wait{};
};

/// Prints the measures of the stored results, or of a fresh run in memory. The basin is not changed.
int evaluate_command(const EvaluateCommand& command, BatchDialogs& dialogs, std::ostream& out);

}  // namespace nivora
