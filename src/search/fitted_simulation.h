// A simulation with the numbers that a search found.
#pragma once

#include "engine/batch_dialogs.h"
#include "search/study_problem.h"

#include <chrono>
#include <filesystem>
#include <string>
#include <vector>

namespace nivora {

/// Why a search's numbers can't be stored in a new simulation of this name; empty if they can. The basin is
/// read.
/// @throws StoreError
[[nodiscard]] std::string fitted_name_problem(const std::filesystem::path& basin,
                                              const std::string& simulation, const std::string& name,
                                              const StudyProblem& problem, std::chrono::milliseconds wait,
                                              BatchDialogs& dialogs);

/// Copies the simulation under the new name, with its scenarios, and changes the copy's parameters by the
/// numbers: a run of it gives the discharge that the search had.
/// @return false after a report
/// @throws StoreError, with the basin as it was
[[nodiscard]] bool store_fitted(const std::filesystem::path& basin, const std::string& simulation,
                                const std::string& name, const StudyProblem& problem,
                                const std::vector<double>& numbers, std::chrono::milliseconds wait,
                                BatchDialogs& dialogs);

}  // namespace nivora
