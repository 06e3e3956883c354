// The commands of the batch program. Each returns the exit status: 0 done, 1 refused by the model or because
// of the data.
#pragma once

#include "batch/reported_state.h"
#include "climate/climate_state.h"
#include "engine/batch_dialogs.h"
#include "engine/run_driver.h"
#include "reports/report_catalogue.h"

#include <chrono>
#include <filesystem>
#include <iosfwd>
#include <optional>
#include <string>
#include <vector>

namespace nivora {

/// The name of the climate report that stands beside a basin.
inline constexpr const char* k_climate_report = "NVR_DfGN.out";

inline constexpr int k_done = 0;
inline constexpr int k_failed = 1;
inline constexpr int k_wrong_usage = 2;

/// How long a command waits for another program that works on the basin, without --wait.
inline constexpr std::chrono::seconds k_usual_wait{10};

/// Which inputs of a simulation are given zone by zone.
struct ByZone {
    bool temperature = false;
    bool precipitation = false;
    bool lapse_rate = false;
    bool coefficients = false;
    bool critical_temperature = false;
    bool recession = false;
};

struct ImportCommand {
    std::filesystem::path file;
    std::filesystem::path basin;
    std::optional<std::string> name;
    ByZone by_zone;
    bool max_min = false;
    std::optional<double> initial_runoff;  ///< m³/s or ft³/s
    /// cm or inches. Outer: whether the option was given; inner: nothing for a blank cell.
    std::optional<std::optional<double>> rain_threshold;
    std::optional<double> latitude;  ///< decimal degrees
    std::chrono::milliseconds wait = k_usual_wait;
};

struct RunCommand {
    std::filesystem::path basin;
    std::string simulation;
    bool year_round = false;
    std::optional<std::string> forecast_days;
    bool no_snow = false;
    std::vector<std::string> lag_shares;
    bool json = false;
    std::chrono::milliseconds wait = k_usual_wait;
};

struct ClimateCommand {
    std::filesystem::path basin;
    std::string simulation;
    std::string scenario;
    std::optional<std::filesystem::path> report;  ///< beside the basin if not given
    int last_step = k_climate_steps;
    bool json = false;
    std::chrono::milliseconds wait = k_usual_wait;
};

struct ReportCommand {
    std::filesystem::path basin;
    std::string simulation;
    std::optional<std::vector<Report>> reports;  ///< all that a user may choose if not given
    std::optional<std::filesystem::path> out;    ///< NVRrpts.out beside the basin if not given
    ReportedRun run;
    bool input_changed = false;
    std::optional<std::filesystem::path> climate_report;  ///< beside the basin if not given
    std::optional<double> now;                            ///< date and time in the reports
    std::chrono::milliseconds wait = k_usual_wait;
};

struct ScenarioCommand {
    std::filesystem::path basin;
    std::string simulation;
    std::string name;
    std::optional<std::string> winter_end;  ///< the middle of the simulation if not given
    std::vector<std::string> edits;         ///< each VARIABLE:START:END:ACTION:FACTOR:ZONE
    std::chrono::milliseconds wait = k_usual_wait;
};

/// A copy of a simulation, or another name for it.
struct SimulationNameCommand {
    std::filesystem::path basin;
    std::string simulation;
    bool copy = false;
    std::string name;  ///< of the copy, or the new one
    std::chrono::milliseconds wait = k_usual_wait;
};

struct ExportCommand {
    std::filesystem::path basin;
    std::string table;
    std::filesystem::path file;
    bool netcdf = false;     ///< otherwise CSV
    std::string simulation;  ///< whose results they are, for NetCDF; empty: not told
    RunChoice run;           ///< that made them, if a simulation is told
    bool run_told = false;
    std::chrono::milliseconds wait = k_usual_wait;
};

/// Creates the basin file from a legacy file, or imports into it if it exists. A refused
/// command changes nothing.
int import_command(const ImportCommand& command, BatchDialogs& dialogs, std::ostream& out);

/// Lists the simulations of a basin.
int simulations_command(const std::filesystem::path& basin, std::chrono::milliseconds wait, bool json,
                        BatchDialogs& dialogs, std::ostream& out);

/// Copies a simulation with its parameter table and its scenarios, or gives it another name. A refused
/// command changes nothing.
int simulation_name_command(const SimulationNameCommand& command, BatchDialogs& dialogs, std::ostream& out);

/// Runs a simulation, stores `SimResults` in the file and prints the statistics.
int run_command(const RunCommand& command, BatchDialogs& dialogs, std::ostream& out);

/// Runs the steps of a climate evaluation, stores `SimResults` in the file and the report beside it, and
/// prints the statistics of each step and the seasonal summary.
int climate_command(const ClimateCommand& command, BatchDialogs& dialogs, std::ostream& out);

/// Writes reports of the basin and its last run into a file, up to a refused one. The basin stays as it is,
/// and so does the file if the first report is refused.
int report_command(const ReportCommand& command, BatchDialogs& dialogs);

/// Creates a climate scenario of a simulation, or replaces the one of its name. A refused
/// command changes nothing.
int scenario_command(const ScenarioCommand& command, BatchDialogs& dialogs, std::ostream& out);

/// Writes a table as CSV or NetCDF.
int export_command(const ExportCommand& command, BatchDialogs& dialogs);

/// Looks through the daily variables, and prints what is likely to be wrong. Findings are no refusal.
int check_data_command(const std::filesystem::path& basin, bool json, std::chrono::milliseconds wait,
                       BatchDialogs& dialogs, std::ostream& out);

/// Checks every page and row of a basin file, and prints what is wrong.
int check_command(const std::filesystem::path& basin, std::chrono::milliseconds wait, BatchDialogs& dialogs,
                  std::ostream& out);

/// Copies what can be read of a damaged basin into a new file, and prints what was copied and what was not.
int salvage_command(const std::filesystem::path& damaged, const std::filesystem::path& made,
                    BatchDialogs& dialogs, std::ostream& out);

/// Writes the blank template of all basins.
int template_command(const std::filesystem::path& file, BatchDialogs& dialogs);

}  // namespace nivora
