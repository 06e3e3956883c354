// What the commands of studies share: their options, and the problem that these make.
#pragma once

#include "engine/batch_dialogs.h"
#include "search/study_problem.h"

#include <chrono>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace nivora {

/// A simulation in a file.
struct StudySource {
    std::filesystem::path basin;
    std::string simulation;
};

struct StudyCommand {
    StudySource source;
    std::vector<StudySource> with;        ///< further simulations whose fit days count
    std::vector<StudySource> check_with;  ///< further simulations that are only reported
    std::vector<std::string> free;
    std::vector<std::string> objectives;
    std::optional<Period> fit;    ///< of the first simulation; its whole period if not given
    std::optional<Period> check;  ///< of the first simulation
    /// The objectives are only reported: one that the measured discharge does not have is no reason to
    /// refuse.
    bool reported_only = false;
    bool no_snow = false;
    unsigned threads = 1;
    unsigned seed = 1;
    std::chrono::milliseconds wait{};
};

/// Reads the basins and the options; null after a report. The basins are not changed.
[[nodiscard]] std::unique_ptr<const StudyProblem> study_problem(const StudyCommand& command,
                                                                BatchDialogs& dialogs);

/// The same for a caller who tells errors of the store and of files himself. @throws StoreError, FileError
[[nodiscard]] std::unique_ptr<const StudyProblem> study_problem_or_throw(const StudyCommand& command,
                                                                         BatchDialogs& dialogs);

/// The same simulations, ranges and days with other measures, which are only reported; null after a report.
[[nodiscard]] std::unique_ptr<const StudyProblem> with_reported(const StudyProblem& problem,
                                                                const std::vector<std::string>& names,
                                                                BatchDialogs& dialogs);

/// The options that decide what is computed, in one line.
[[nodiscard]] std::string study_options_line(const StudyProblem& problem, const StudyCommand& command,
                                             std::size_t evaluations);

/// "2001-10-01..2002-09-30"
[[nodiscard]] std::optional<Period> read_iso_period(std::string_view text);
[[nodiscard]] std::string iso_period_text(const Period& period);

}  // namespace nivora
