// The options of the response command.
#pragma once

#include "batch/response_command.h"

#include <CLI/CLI.hpp>

#include <string>
#include <string_view>
#include <vector>

namespace nivora {

/// The texts of the options as the command line gives them.
struct ResponseTexts {
    std::string basin;
    std::string simulation;
    std::string winter_end;
    std::string temperature;
    std::string precipitation;
    unsigned threads = usual_threads();
    bool json = false;
    std::string out = {};
    std::string picture = {};
    std::string share = "1/1";
    bool resume = false;
};

CLI::App& add_response(CLI::App& app, ResponseTexts& texts);

/// The command that checked options ask for.
[[nodiscard]] ResponseCommand response_of(const ResponseTexts& texts, std::chrono::milliseconds wait);

/// Changes that were read, or what is wrong with their text.
struct ReadChanges {
    std::vector<float> values;
    std::string problem;  ///< empty if the values were read
};

/// The most changes of one kind.
inline constexpr std::size_t k_most_changes = 200;

/// Numbers joined by commas, such as -1,0,2.5, or LOW..HIGH:STEP, such as 0..4:0.5. The steps are counted
/// from the low end; the high end is the last one if the steps meet it to a millionth of a step.
[[nodiscard]] ReadChanges read_changes(std::string_view text);

}  // namespace nivora
