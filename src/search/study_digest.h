// What a study was begun with, as short texts that are compared when it goes on.
#pragma once

#include "search/study_problem.h"

#include <string>

namespace nivora {

/// One line that changes with anything that the runs of a problem read from its basins.
[[nodiscard]] std::string study_digest(const StudyProblem& problem);

}  // namespace nivora
