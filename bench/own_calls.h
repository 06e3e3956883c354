// A run with its file, as SQLite's own calls do it without anything around them: what a run is measured
// beside.
#pragma once

#include <filesystem>
#include <vector>

namespace nivora {

/// The results that a basin holds, row by row with 57 values each; a missing one is NaN.
[[nodiscard]] std::vector<double> stored_results(const std::filesystem::path& file);

/// Reads the 18 variables and parameters of each row of the last year, and then replaces the results by
/// others, in one transaction. With the results of a run this writes what a run writes. Journal and flushes
/// are those of any basin, and content that is removed is not wiped either.
/// @param results as `stored_results` returns them
/// @return the sum of what was read
double replace_results_by_own_calls(const std::filesystem::path& file, const std::vector<double>& results);

/// How often this process has flushed a file or a folder.
[[nodiscard]] int flushes_of_this_process();

}  // namespace nivora
