// The open basin in memory, and how it is read from a basin file.
#pragma once

#include "store/database.h"
#include "store/rows.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace nivora {

/// The most elevation zones that a basin may have.
inline constexpr int k_most_zones = 16;

/// The text of the basin area if there is none.
inline constexpr const char* k_no_area = "--";
/// The name shown while no simulation is selected.
inline constexpr const char* k_no_simulation = "--";

/// The state of the open basin: where its files are, what is saved and still valid, the boxes of the basin
/// definition as texts, the zone grid and the simulation grid as rows. Lives as long as the program.
struct BasinState {
    std::filesystem::path App_Path;    ///< the program's folder
    std::filesystem::path Work_File;   ///< the working copy that every window reads and writes
    std::filesystem::path Basin_File;  ///< the file that the user knows

    bool New_Basin = true;       ///< the basin came from the template and has no file of its own
    bool Basin_Changed = false;  ///< something differs from the basin's file
    bool Input_Changed = false;  ///< an input changed since the last run
    bool Output_Valid = false;   ///< a run completed on the present inputs

    /// An input had changed since the last run when a save cleared `Input_Changed`.
    bool results_outdated = false;
    /// Local date and time of the run that wrote `SimResults`; nothing if that was in an earlier session.
    std::optional<double> results_time;

    /// Another number after each change of these marks: an edit that is taken back may only take its own
    /// mark back.
    std::uint64_t marks = 0;

    /// The basin's own units, fixed once: those of its definition, its zones, its area, and their
    /// labels and limits.
    Units basin_units = Units::NotFixed;
    /// The units of the current simulation, in which a run computes and its results are shown; those of the
    /// basin until a simulation is selected.
    Units Units_Code = Units::NotFixed;
    int ZoneCount = 1;  ///< 1 to 16

    std::string basin_name;
    std::string basin_description;
    std::string zones_text;
    std::string reference_elevation_text;
    std::string latitude_text;
    std::string longitude_text;
    std::string basin_area_text = k_no_area;

    std::vector<Zone> zones;              ///< zone 1 first
    std::vector<Simulation> simulations;  ///< in the order of the grid
    std::optional<std::size_t> current_row;

    std::string Current_Sim_Name = k_no_simulation;
    std::optional<DayCount> Current_Start;
    std::optional<DayCount> Current_End;

    /// The row that is selected in the simulation grid; null if there is none.
    [[nodiscard]] Simulation* current_simulation();
    [[nodiscard]] const Simulation* current_simulation() const;
};

/// The sum of the zone areas as the total cell shows it: with as many decimals as it needs, up to the seven
/// digits of a Single. "--" while there are no zones.
[[nodiscard]] std::string basin_area_text(const std::vector<Zone>& zones);

/// Fills the basin's boxes and both grids from a basin file; selects no simulation and does not change
/// paths and flags.
void read_basin(BasinDatabase& database, BasinState& basin);

/// Makes a row of the simulation grid the current simulation.
void select_simulation(BasinState& basin, std::size_t row);

/// Whether there is a zone grid with areas, which a run needs.
[[nodiscard]] bool has_area(const BasinState& basin);

/// The row of a simulation by name, without regard to case; nothing if there is none.
[[nodiscard]] std::optional<std::size_t> find_simulation(const BasinState& basin, std::string_view name);

}  // namespace nivora
