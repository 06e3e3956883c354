// The options that the commands of studies share.
#pragma once

#include "batch/study_command.h"

#include <CLI/CLI.hpp>

#include <chrono>
#include <string>
#include <vector>

namespace nivora {

/// The texts of these options as they were given.
struct StudyTexts {
    std::string basin;
    std::string simulation;
    std::vector<std::string> with;
    std::vector<std::string> check_with;
    std::vector<std::string> free;
    std::string fit;
    std::string check;
    bool no_snow = false;
    unsigned threads = 0;  ///< set to the number of cores
    unsigned seed = 1;
};

/// Adds the basin and the options to a command.
void add_study_options(CLI::App& command, StudyTexts& texts);
[[nodiscard]] StudyCommand study_of(const StudyTexts& texts, std::chrono::milliseconds wait);

}  // namespace nivora
