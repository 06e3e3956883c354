// The options that the commands of studies share.
#pragma once

#include "search/sample.h"
#include "search/study_command.h"

#include <CLI/CLI.hpp>

#include <chrono>
#include <optional>
#include <string>
#include <string_view>
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
/// The option that computes one of several parts of a study.
void add_share_option(CLI::App& command, std::string& text);
/// "3/16". @return nothing for any other text
[[nodiscard]] std::optional<SampleShare> read_share(std::string_view text);
[[nodiscard]] StudyCommand study_of(const StudyTexts& texts, std::chrono::milliseconds wait);

}  // namespace nivora
