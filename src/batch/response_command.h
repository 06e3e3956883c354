// The command that evaluates pairs of a temperature and a precipitation change.
#pragma once

#include "batch/batch_dialogs.h"
#include "studies/study_pool.h"

#include <chrono>
#include <filesystem>
#include <iosfwd>
#include <string>
#include <vector>

namespace nivora {

struct ResponseCommand {
    std::filesystem::path basin;
    std::string simulation;
    std::string winter_end;            ///< yyyy-mm-dd
    std::vector<float> temperature;    ///< added, °C or °F
    std::vector<float> precipitation;  ///< factors
    unsigned threads = usual_threads();
    bool json = false;
    std::chrono::milliseconds wait{};
};

/// Takes the six steps of a climate evaluation for every pair, in memory, and prints what came of each. The
/// basin is not changed.
int response_command(const ResponseCommand& command, BatchDialogs& dialogs, std::ostream& out);

}  // namespace nivora
