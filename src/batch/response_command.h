// The command that evaluates pairs of a temperature and a precipitation change.
#pragma once

#include "engine/batch_dialogs.h"
#include "search/sample.h"
#include "studies/study_pool.h"

#include <chrono>
#include <filesystem>
#include <iosfwd>
#include <optional>
#include <string>
#include <vector>

namespace nivora {

struct ResponseCommand {
    std::filesystem::path basin;
    std::string simulation;
    std::string winter_end;            ///< yyyy-mm-dd
    std::vector<float> temperature;    ///< added, °C or °F; each once
    std::vector<float> precipitation;  ///< factors; each once
    unsigned threads = usual_threads();
    bool json = false;
    std::optional<std::filesystem::path> out;      ///< CSV with a line for each pair
    std::optional<std::filesystem::path> picture;  ///< its name begins those of the pictures
    SampleShare share;
    bool resume = false;
    std::chrono::milliseconds wait{};
};

/// Takes the six steps of a climate evaluation for every pair, in memory, and prints what came of each. The
/// basin is not changed.
///
/// @param terminal whether `err` is one, on which progress is a bar
int response_command(const ResponseCommand& command, BatchDialogs& dialogs, std::ostream& out,
                     std::ostream& err, bool terminal);

}  // namespace nivora
