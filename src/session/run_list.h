// The list of the last runs, which a file of the user keeps beside the settings.
#pragma once

#include "base/calendar.h"
#include "base/units.h"

#include <array>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace nivora {

/// The most runs of one basin that are kept, and of all basins together; the oldest go first.
inline constexpr std::size_t k_most_listed_of_basin = 200;
inline constexpr std::size_t k_most_listed = 2000;

/// A run as it was: what is listed later does not depend on the basin any more.
struct ListedRun {
    double time = 0.0;       ///< local date and time of its end
    std::string basin = {};  ///< the basin's file; empty for one that had none yet
    std::string simulation = {};
    std::string renamed = {};   ///< the name that the simulation was given later; empty if none
    std::string kind = {};      ///< the title of the run, such as "Year round Simulation"
    std::string scenario = {};  ///< of an evaluation of a changed climate; empty otherwise
    bool completed = false;
    DayCount start = 0;
    DayCount end = 0;
    Units units = Units::Metric;
    int interval = 0;  ///< days between updates of a forecast; 0 for a simulation
    bool no_snow = false;
    float initial_runoff = 0.0F;
    std::string lag = {};  ///< shares of the custom time lag, "0.5 0.3 0.2"; empty without one
    /// Measured volume, average measured, computed volume, average computed, volume difference, R²; nothing
    /// for one that was not computed.
    std::array<std::optional<float>, 6> statistics = {};

    bool operator==(const ListedRun&) const = default;
};

/// The lines of a list, and back. @return nothing if the text is not a complete list
[[nodiscard]] std::string run_list_text(const std::vector<ListedRun>& runs);
[[nodiscard]] std::optional<std::vector<ListedRun>> read_run_list_text(std::string_view text);

/// A basin's file as the list names it: absolute, so that one file has one name.
[[nodiscard]] std::string listed_basin(const std::filesystem::path& basin_file);

/// The list, oldest run first. Its file is written whole after each change. No fault of the file ever stops
/// the program: the runs of this session stay listed, and `fault` tells what is wrong.
class RunList {
public:
    /// Keeps the runs from here on in a file; before, they are kept in memory alone. A file that can't be
    /// read as a list is moved aside, to its name with ".damaged" behind it, and a new list begins.
    void keep_in(std::filesystem::path file);

    [[nodiscard]] const std::vector<ListedRun>& runs() const { return runs_; }
    /// The runs of a basin, by the name from listed_basin.
    [[nodiscard]] std::vector<ListedRun> runs_of(std::string_view basin) const;

    void add(ListedRun run);
    /// Notes the new name of a simulation with its runs.
    void rename(std::string_view basin, std::string_view former, std::string_view name);

    /// What is wrong with the file, as a sentence; empty if all is well.
    [[nodiscard]] const std::string& fault() const { return fault_; }

private:
    void read();
    void move_aside();
    void write();

    std::filesystem::path file_;
    std::vector<ListedRun> runs_;
    bool may_write_ = false;  ///< false while the file holds what could not be read or moved aside
    std::string fault_;
};

}  // namespace nivora
