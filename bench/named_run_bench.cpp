// A run by name, one for each line of the standard input, with its seconds on the standard output: the
// partner of python_run_bench.py, which takes turns with it. Without input it does nothing.
//
//   named_run_bench BASIN SIMULATION

#include "engine/named_run.h"

#include "bench/turns.h"
#include "engine/batch_dialogs.h"

#include <fmt/format.h>

#include <cstdio>
#include <iostream>
#include <sstream>
#include <string>

namespace nivora {
namespace {

double seconds_of_run(const char* basin_file, const char* simulation) {
    return seconds_of([&] {
        BasinState basin;
        RunState run;
        SimResults table;
        std::ostringstream report;
        BatchDialogs dialogs{report, false};
        const RunOutcome outcome = run_by_name({.basin = basin_file,
                                                .simulation = simulation,
                                                .choice = {.forecast = false, .index = 1},
                                                .wait = std::chrono::seconds{10}},
                                               {basin, run, dialogs}, &table);
        if (!outcome.completed) fmt::print(stderr, "The run did not reach its end: {}\n", report.str());
    });
}

}  // namespace
}  // namespace nivora

int main(int argc, char** argv) {
    if (argc < 3) return 0;
    for (std::string line; std::getline(std::cin, line);) {
        fmt::print("{}\n", nivora::seconds_of_run(argv[1], argv[2]));
        static_cast<void>(std::fflush(stdout));
    }
    return 0;
}
