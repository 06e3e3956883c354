// A basin of 16 zones with the results of a year, for the benchmarks of plots.
#pragma once

#include "base/scripted_dialogs.h"
#include "bench/bench_basin.h"
#include "engine/run_driver.h"
#include "plots/select_plot.h"

#include <unistd.h>

#include <filesystem>
#include <string>
#include <system_error>

namespace nivora {

/// A basin whose last simulation of a year was run, in a folder of its own.
class PlottedBasin {
public:
    PlottedBasin() {
        std::filesystem::create_directories(folder_);
        write_bench_basin(file_, k_zones, 2);
        {
            BasinDatabase database{file_, Access::ReadOnly};
            read_basin(database, basin_);
        }
        basin_.Work_File = basin_.Basin_File = file_;
        // From 1 October on, as the end of a winter belongs to the comparison of water equivalents.
        basin_.simulations.at(0).start = basin_.simulations.at(0).start.value() + 1;
        select_simulation(basin_, 0);
        ScriptedDialogs dialogs;
        dialogs.then(Answer::Ok);
        choose_simulation(run_);
        start_run({basin_, run_, dialogs}, 1);
    }
    PlottedBasin(const PlottedBasin&) = delete;
    PlottedBasin& operator=(const PlottedBasin&) = delete;
    ~PlottedBasin() {
        std::error_code ignored;
        std::filesystem::remove_all(folder_, ignored);
    }

    [[nodiscard]] const std::filesystem::path& file() const { return file_; }
    [[nodiscard]] const std::string& simulation() const { return basin_.Current_Sim_Name; }
    [[nodiscard]] std::filesystem::path in_folder(const std::string& name) const { return folder_ / name; }

    [[nodiscard]] PlotOutcome plot(PlotNumber number) const {
        BasinDatabase database{file_, Access::ReadOnly};
        return select_plot(database, {.plot = number, .zone = std::nullopt}, sources());
    }

    /// What a plot is built from.
    [[nodiscard]] PlotSources sources() const { return {basin_, run_, true}; }

private:
    static constexpr int k_zones = 16;

    std::filesystem::path folder_ =
        std::filesystem::temp_directory_path() / ("nivora-plot-bench-" + std::to_string(getpid()));
    std::filesystem::path file_ = folder_ / "basin.mdb";
    BasinState basin_;
    RunState run_;
};

}  // namespace nivora
