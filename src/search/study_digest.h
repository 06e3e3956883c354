// What a study was begun with, as short texts that are compared when it goes on.
#pragma once

#include "search/study_problem.h"

#include <string>

namespace nivora {

/// A word that changes with anything that the runs of a simulation read from its basin. It has a part for
/// each of settings, zones, variables and parameters, as NAME:DIGEST with commas between them, so that a
/// comparison tells what has changed.
[[nodiscard]] std::string basin_digest(const StudyBasin& basin);

/// One line of such words, for the basins of a problem.
[[nodiscard]] std::string study_digest(const StudyProblem& problem);

}  // namespace nivora
