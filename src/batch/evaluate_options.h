// The options of the evaluate command.
#pragma once

#include "batch/evaluate_command.h"

#include <CLI/CLI.hpp>

#include <string>
#include <string_view>

namespace nivora {

/// The texts of the options as the command line gives them.
struct EvaluateTexts {
    std::string basin;
    std::string simulation;
    std::string from;
    std::string to;
    std::string months;
    bool run = false;
    bool json = false;
};

CLI::App& add_evaluate(CLI::App& app, EvaluateTexts& texts);

/// The command that checked options ask for.
[[nodiscard]] EvaluateCommand evaluate_of(const EvaluateTexts& texts, const CLI::App& app,
                                          std::chrono::milliseconds wait);

/// Months that were read, or what is wrong with their text.
struct ReadMonths {
    MonthSet months{};
    std::string problem;  ///< empty if the months were read
};

/// Months and ranges of months joined by commas, such as 4-9 or 1-3,10-12. A range does not run over the end
/// of the year, so that 9-4 is refused as reversed.
[[nodiscard]] ReadMonths read_months(std::string_view text);

}  // namespace nivora
