// What a calibration found, as text and as JSON.
#pragma once

#include "search/calibration.h"

#include <iosfwd>
#include <string>

namespace nivora {

void print_found(const StudyProblem& problem, const FoundSets& found, std::ostream& out);

/// @param options the line that decided the course of the search
[[nodiscard]] std::string found_json(const StudyProblem& problem, const FoundSets& found,
                                     const std::string& options);

}  // namespace nivora
